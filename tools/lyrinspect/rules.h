#pragma once

// What glTF 2.0 demands of the members of an object beyond the type of each: which must be there, which must not stand
// together, which mean nothing alone, and how their numbers stand to each other.

#include "tools/lyrinspect/document.h"
#include "tools/lyrinspect/scene.h"
#include "tools/lyrinspect/warnings.h"

namespace lyrsdk::inspect {

// Adds a warning for every demand that the object's JSON does not meet. A member of the wrong type counts as there.
void CheckRules(const SceneObject& pObject, const Json& pJson, Warnings& pWarnings);

// The same for the sampler of an animation, which is shown as a part of each channel that uses it.
void CheckChannelSampler(const SceneObject& pChannel, const Json& pSampler, Warnings& pWarnings);

}  // namespace lyrsdk::inspect
