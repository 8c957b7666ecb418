// A library of materials: a prototype, materials that are instances of it, and variants that are instances of those.
//
// An instance holds only what makes it different and sees the rest in the page above it. What it holds can be handed
// back, or pushed up for all instances of the page above.

#include <forward_list>
#include <iostream>
#include <utility>

#include "lyrfilesdk/lyrsdk.h"

using namespace lyrsdk;

namespace {

// Makes the pages and owns them: nothing else destroys them.
class Library {
public:
    // The page that all materials come from; not valid when there is no memory.
    KLyrPropertyHandle MakePrototype() {
        const KLyrPropertyHandle lTexture = MakeTextureType();
        const KLyrPropertyHandle lRoot = Own(KLyrOwnedPage::Create("material", eUNIDENTIFIED));
        const bool lIsMade = lTexture.Valid() && lyrAdd(lRoot, "name", "material").Valid() && AddSurface(lRoot) &&
                             lyrBuild(lRoot, "texture", lTexture).GetHandle().Valid();
        return lIsMade ? lRoot : KLyrPropertyHandle();
    }

    // A material that looks like pAbove until it is given something of its own.
    KLyrPropertyHandle MakeMaterial(const KLyrPropertyHandle& pAbove, const char* pName) {
        const KLyrPropertyHandle lRoot = Own(KLyrOwnedPage::Create(pAbove));
        return lyrSet(lRoot.Find("name", true), pName) == eLyrSetWritten ? lRoot : KLyrPropertyHandle();
    }

private:
    KLyrPropertyHandle Own(KLyrOwnedPage pPage) {
        mPages.push_front(std::move(pPage));
        return *mPages.front();
    }

    // A compound type is a page too: a property that is typed by it gets copies of its properties as children.
    KLyrPropertyHandle MakeTextureType() {
        const KLyrPropertyHandle lRoot = Own(KLyrOwnedPage::Create("texture", eUNIDENTIFIED));
        const bool lIsMade = lyrAdd(lRoot, "file", "").Valid() && lyrAdd(lRoot, "tiling", lyrDouble2{{1, 1}}).Valid();
        return lIsMade ? lRoot : KLyrPropertyHandle();
    }

    // The type of a property is that of its default. A builder that fails takes back what it added.
    static bool AddSurface(const KLyrPropertyHandle& pRoot) {
        const KLyrPropertyHandle lColour =
            lyrBuild(pRoot, "colour", lyrDouble3{{0.8, 0.8, 0.8}}).Limits(0.0, 1.0).Label("Base colour");
        const KLyrPropertyHandle lRoughness =
            lyrBuild(pRoot, "roughness", 0.5).Limits(0.0, 1.0).SoftMin(0.02).Flags(LyrPropertyFlags::eANIMATABLE);
        const KLyrPropertyHandle lMetalness = lyrBuild(pRoot, "metalness", 0.0).Limits(0.0, 1.0);
        const KLyrPropertyHandle lBlending =
            lyrBuild(pRoot, "blending", eENUM).EnumTexts({"opaque", "mask", "blend"}).DefaultText("opaque");
        return lColour.Valid() && lRoughness.Valid() && lMetalness.Valid() && lBlending.Valid();
    }

    // The last one first, and so they go: a page that goes before its instances would have to give them copies of all
    // they see in it.
    std::forward_list<KLyrOwnedPage> mPages;
};

// The name of the material that a property belongs to.
KString NameOf(const KLyrPropertyHandle& pProperty) {
    const KLyrPropertyHandle lRoot(pProperty.GetPage(), 0);
    return lyrGet<KString>(lRoot.Find("name", true)).value_or(KString("?"));
}

// All values, a star in front of those that the material holds itself, the page above behind the others.
void Show(const KLyrPropertyHandle& pMaterial) {
    std::cout << NameOf(pMaterial).Buffer() << '\n';
    for (const KLyrPropertyHandle& lProperty : lyrDescendents(pMaterial)) {
        if (!lyrHoldsValue(lProperty.GetType()))
            continue;  // only holds other properties together
        const KLyrItemOrigin lValue = lyrExplain(lProperty).mValue;
        const bool lIsOwn = lValue.mOrigin == KLyrOrigin::eOwn;
        std::cout << (lIsOwn ? "  * " : "    ");
        lyrDumpPath(std::cout, lProperty);
        std::cout << ": ";
        if (!lyrDumpValue(std::cout, lProperty))
            std::cout << "?";
        else if (!lIsOwn)
            std::cout << "  <- " << NameOf(lValue.mHolder).Buffer();
        std::cout << '\n';
    }
}

// The ways back to what the page above shows.
void HandBack(const KLyrPropertyHandle& pMaterial, double pAbove) {
    const KLyrPropertyHandle lRoughness = pMaterial.Find("roughness", true);
    std::cout << "set to 0.6: " << lyrResultText(lyrSet(lRoughness, 0.6)) << '\n';
    // What is the same above need not be held here.
    std::cout << "set to " << pAbove << ": " << lyrResultText(lyrSet(lRoughness, pAbove)) << '\n';
    std::cout << "once more: " << lyrResultText(lyrSet(lRoughness, pAbove)) << '\n';
    // Pinned, it stays what it is when the page above changes.
    std::cout << "pinned: " << lyrResultText(lyrSet(lRoughness, pAbove, eLyrSetPin)) << '\n';
    std::cout << "dropped as redundant: " << lyrDropRedundant(pMaterial) << '\n';
    std::cout << "set to 0.9: " << lyrResultText(lyrSet(lRoughness, 0.9)) << '\n';
    std::cout << "reverted: " << (lyrRevert(lRoughness) ? "yes" : "no") << '\n';
}

// What a push would change, told before it is done.
void Preview(const KLyrPropertyHandle& pProperty) {
    lyrVisitPushEffects(pProperty, [](const KLyrPushEffect& pEffect) {
        std::cout << "  " << NameOf(pEffect.mProperty).Buffer() << ": ";
        if (pEffect.IsChange())
            std::cout << "will change\n";
        else if (pEffect.mValue == KLyrPushReach::eShielded)
            std::cout << "keeps what " << NameOf(pEffect.mValueShield).Buffer() << " holds\n";
        else
            std::cout << "looks the same\n";
    });
}

bool Push(const KLyrPropertyHandle& pProperty) {
    std::cout << "pushing the " << pProperty.GetName() << " of " << NameOf(pProperty).Buffer() << " up\n";
    Preview(pProperty);
    return lyrPushProperty(pProperty) == KLyrPushResult::ePushed;
}

// A write that is refused would leave a material that looks wrong, so that every result counts.
bool IsHeld(ELyrSetResult pResult) {
    return pResult == eLyrSetWritten;
}

bool Run() {
    Library lLibrary;
    const KLyrPropertyHandle lPrototype = lLibrary.MakePrototype();
    const KLyrPropertyHandle lSteel = lLibrary.MakeMaterial(lPrototype, "steel");
    const KLyrPropertyHandle lBrushed = lLibrary.MakeMaterial(lSteel, "brushed steel");
    const KLyrPropertyHandle lMirror = lLibrary.MakeMaterial(lSteel, "mirror");
    const KLyrPropertyHandle lSink = lLibrary.MakeMaterial(lSteel, "kitchen sink");
    if (!lPrototype.Valid() || !lSteel.Valid() || !lBrushed.Valid() || !lMirror.Valid() || !lSink.Valid())
        return false;

    const bool lIsSet = IsHeld(lyrSet(lSteel.Find("metalness", true), 1)) &&  // an int, for a double
                        IsHeld(lyrSet(lSteel.Find("roughness", true), "0.3")) &&
                        IsHeld(lyrSet(lMirror.Find("roughness", true), 0.0)) &&
                        IsHeld(lyrSet(lBrushed.Find("texture/file", "/", true), "brushed.png")) &&
                        IsHeld(lyrSet(lBrushed.Find("texture/tiling", "/", true), lyrDouble2{{4, 1}}));
    if (!lIsSet)
        return false;
    Show(lBrushed);

    std::cout << "\nthe roughness of " << NameOf(lBrushed).Buffer() << '\n';
    HandBack(lBrushed, 0.3);

    // All steel is to be rougher, and this variant is where it was tried.
    std::cout << '\n';
    if (!IsHeld(lyrSet(lBrushed.Find("roughness", true), 0.45)) || !Push(lBrushed.Find("roughness", true)))
        return false;
    Show(lSink);

    // What each page of the family holds itself.
    std::cout << '\n';
    KLyrDumpStyle lStyle;
    lStyle.mOnlyOwn = true;
    lStyle.mDescriptions = false;
    return lyrDumpFamily(std::cout, lPrototype, lStyle);
}

}  // namespace

int main() {
    if (Run())
        return 0;
    std::cerr << "a material could not be made\n";
    return 1;
}
