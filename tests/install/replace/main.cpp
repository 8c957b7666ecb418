// A host that defines the library's memory and report functions itself. The library must call these and nothing else:
// the handlers of its own definitions end the program.

#include <lyrfilesdk/lyrsdk.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace {

int sgMallocs = 0;
int sgFrees = 0;
int sgArrayReallocs = 0;
int sgArrayFrees = 0;
int sgReports = 0;

void* RefuseMalloc(std::size_t) {
    std::abort();
}

void RefuseFree(void*) {
    std::abort();
}

void RefuseReport(const char*, const char*, unsigned long, const char*, bool*) {
    std::abort();
}

// Makes an object with a child, changes it, and leaves nothing behind.
bool UsePages() {
    using namespace lyrsdk;
    KLyrPropertyHandle lText = KLyrPropertyHandle::Create("text", eSTRING);
    KLyrPropertyHandle lObject = KLyrPropertyHandle::Create("object", eUNIDENTIFIED);
    KLyrPropertyHandle lInstance = KLyrPropertyHandle::Create(lObject);
    const KString lHello("a text that no small buffer holds");
    bool lGood = lObject.Add("greeting", lText).Set(&lHello, eSTRING, false);
    KString lRead;
    lGood = lInstance.Find("greeting", true).Get(&lRead, eSTRING) && lRead == lHello && lGood;
    const char lVoid = 0;
    lGood = !lInstance.Find("greeting", true).Set(&lVoid, eREFERENCE, false) && lGood;
    lInstance.Destroy();
    lObject.Destroy();
    lText.Destroy();
    return lGood;
}

bool Expect(bool pCondition, const char* pText) {
    if (!pCondition)
        std::printf("not so: %s\n", pText);
    return pCondition;
}

}  // namespace

namespace lyrsdk {

void* LyrSdkMalloc(std::size_t pSize) {
    ++sgMallocs;
    return std::malloc(pSize);
}

void LyrSdkFree(void* pMemory) {
    sgFrees += pMemory ? 1 : 0;
    std::free(pMemory);
}

char* KBaseArrayRealloc(char* pBlock, unsigned int pSize) {
    sgArrayReallocs += pBlock ? 0 : 1;
    return static_cast<char*>(std::realloc(pBlock, pSize));
}

void KBaseArrayFree(char* pBlock) {
    sgArrayFrees += pBlock ? 1 : 0;
    std::free(pBlock);
}

void KAssertFailed(const char*, const char*, unsigned long, const char* pMessage, bool*) {
    sgReports += std::strcmp(pMessage, "Trying to set value on a void Reference type") == 0 ? 1 : 0;
}

}  // namespace lyrsdk

int main() {
    lyrsdk::LyrSdkSetMemoryHandlers(&RefuseMalloc, &RefuseFree);
    lyrsdk::KSetAssertFailedHandler(&RefuseReport);
    bool lGood = Expect(UsePages(), "the pages work");
    lGood = Expect(sgMallocs > 0 && sgMallocs == sgFrees, "the host's memory functions are called in pairs") && lGood;
    lGood = Expect(sgArrayReallocs > 0 && sgArrayReallocs == sgArrayFrees, "and its array functions") && lGood;
    lGood = Expect(sgReports == 1, "the report reaches the host's function") && lGood;
    return lGood ? 0 : 1;
}
