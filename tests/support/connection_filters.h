#pragma once

// Filters for connection points.

#include <vector>

#include "lyrfilesdk/lyrcore/klyrconnectionpoint.h"

namespace lyrsdk {

// Selects the connections that have one of the type bits, and counts how often it was asked.
class TypeFilter : public KLyrConnectionPointFilter {
public:
    explicit TypeFilter(int pBits) : mBits(pBits) {}

    bool Selects(const KLyrConnectionPoint*, kLyrConnectionType pType) const override {
        ++mAsked;
        return (static_cast<int>(pType) & mBits) != 0;
    }
    void Change(int pBits) { mBits = pBits; }

    // How often Selects was called since the last time this was.
    int TakeAsked() {
        const int lAsked = mAsked;
        mAsked = 0;
        return lAsked;
    }

private:
    int mBits;
    mutable int mAsked = 0;
};

// Selects the connections to one peer, whatever their type, and remembers everything that it was asked for.
class PeerFilter : public KLyrConnectionPointFilter {
public:
    struct Question {
        const KLyrConnectionPoint* mPeer;
        kLyrConnectionType mType;
    };

    explicit PeerFilter(const KLyrConnectionPoint* pPeer) : mPeer(pPeer) {}

    bool Selects(const KLyrConnectionPoint* pPeer, kLyrConnectionType pType) const override {
        mQuestions.push_back({pPeer, pType});
        return pPeer == mPeer;
    }
    const std::vector<Question>& Questions() const { return mQuestions; }

private:
    const KLyrConnectionPoint* mPeer;
    mutable std::vector<Question> mQuestions;
};

}  // namespace lyrsdk
