#pragma once

// What the debugger is asked about: objects of every type, made in a heap that hands nothing out twice, so that what
// was destroyed stays destroyed.

#include "lyrfilesdk/lyrsdk.h"

namespace scene {

// The heap of the library. What is freed is overwritten, or stays as it is.
void OpenHeap();
void KeepWhatIsFreed(bool pKeep);

void MakeContainers();
void MakeValues();
void MakeLamps();
void MakeConnections();
void MakeOddities();
// After the lamps and connections.
void MakeAnswers();
// Memory in which there is no object: noise, pointers in circles, objects with one word changed.
void MakeGarbage();

extern lyrsdk::KArrayTemplate<int> sgInts;
extern lyrsdk::KLyrPropertyValue* sgDeskPowerValue;
extern lyrsdk::KLyrPropertyHandle sgLamp;
extern lyrsdk::KLyrPropertyHandle sgDeskLamp;
extern lyrsdk::KLyrPropertyHandle sgMyLamp;
extern lyrsdk::KLyrPropertyHandle sgPower;
extern lyrsdk::KLyrPropertyHandle sgMyPower;
extern lyrsdk::KLyrPropertyHandle sgPlaceX;
extern lyrsdk::KLyrPropertyHandle sgMain;

}  // namespace scene
