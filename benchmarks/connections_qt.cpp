#include <QMetaMethod>
#include <QObject>

#include "benchmarks/connections_sides.h"

namespace lyrsdk::bench {

namespace {

// A hub that tells how many connections its signal has.
class Counted : public QObject {
public:
    int Receivers() const { return receivers(SIGNAL(objectNameChanged(QString))); }
};

// Disconnects by the connection's own handle, which is the fastest way there is.
class Signals {
public:
    static constexpr char kName[] = "Qt";

    Signals(int pCount, bool pPairs)
        : mHub(std::make_unique<Counted>()),
          mSources(MakeObjects<Counted>(pPairs ? pCount : 0)),
          mPeers(MakeObjects<QObject>(pCount)),
          mConnections(static_cast<std::size_t>(pCount)) {}

    void Connect(int pIndex) { Connect(*mHub, static_cast<std::size_t>(pIndex)); }
    void Disconnect(int pIndex) { QObject::disconnect(mConnections[static_cast<std::size_t>(pIndex)]); }
    void ConnectPair(int pIndex) {
        Connect(*mSources[static_cast<std::size_t>(pIndex)], static_cast<std::size_t>(pIndex));
    }
    void DisconnectPair(int pIndex) { Disconnect(pIndex); }
    int Connections() const {
        int lCount = mHub ? mHub->Receivers() : 0;
        for (const auto& lSource : mSources)
            lCount += lSource->Receivers();
        return lCount;
    }
    void DestroyHub() { mHub.reset(); }
    void Destroy(int pIndex) { mPeers[static_cast<std::size_t>(pIndex)].reset(); }

private:
    template <typename Object>
    static std::vector<std::unique_ptr<Object>> MakeObjects(int pCount) {
        std::vector<std::unique_ptr<Object>> lObjects;
        for (int i = 0; i < pCount; ++i)
            lObjects.push_back(std::make_unique<Object>());
        return lObjects;
    }
    void Connect(QObject& pSource, std::size_t pIndex) {
        mConnections[pIndex] =
            QObject::connect(&pSource, &QObject::objectNameChanged, mPeers[pIndex].get(), &QObject::deleteLater);
    }

    std::unique_ptr<Counted> mHub;
    std::vector<std::unique_ptr<Counted>> mSources;
    std::vector<std::unique_ptr<QObject>> mPeers;
    std::vector<QMetaObject::Connection> mConnections;
};

const Registration sgRegistration([] { AddConnectionSides<Signals>(); });

}  // namespace

}  // namespace lyrsdk::bench
