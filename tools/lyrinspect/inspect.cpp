#include "tools/lyrinspect/inspect.h"

#include <exception>
#include <new>
#include <ostream>

#include "lyrfilesdk/lyrkit/klyrdump.h"
#include "tools/lyrinspect/buffers.h"
#include "tools/lyrinspect/builder.h"
#include "tools/lyrinspect/container.h"
#include "tools/lyrinspect/options.h"
#include "tools/lyrinspect/printer.h"
#include "tools/lyrinspect/stats.h"
#include "tools/lyrinspect/text.h"

namespace lyrsdk::inspect {

namespace {

constexpr std::size_t kMaxFileBytes = std::size_t{1} << 30;

// Measures the phases of the work, one after the other.
class Stopwatch {
public:
    explicit Stopwatch(const std::function<double()>& pClock) : mClock(pClock), mStart(pClock()) {}
    void Lap(const char* pPhase) {
        const double lNow = mClock();
        mPhases.push_back({pPhase, lNow - mStart});
        mStart = lNow;
    }
    const std::vector<Phase>& Phases() const { return mPhases; }

private:
    const std::function<double()>& mClock;
    double mStart;
    std::vector<Phase> mPhases;
};

std::string FolderOf(const std::string& pFile) {
    const std::size_t lSlash = pFile.rfind('/');
    if (lSlash == std::string::npos)
        return std::string();
    return lSlash == 0 ? "/." : pFile.substr(0, lSlash);
}

void PrintSummary(std::ostream& pOutput, const std::string& pFile, const Scene& pScene) {
    pOutput << Escaped(pFile) << ": glTF 2.0";
    for (std::size_t i = 1; i < kKindCount; ++i) {
        const ObjectKind lKind = static_cast<ObjectKind>(i);
        const std::size_t lCount = pScene.Objects(lKind).size();
        if (lCount > 0)
            pOutput << ", " << Counted(lCount, KindName(lKind), KindPlural(lKind));
    }
    pOutput << '\n';
}

class Inspection {
public:
    Inspection(const Options& pOptions, const Surroundings& pSurroundings)
        : mOptions(pOptions),
          mSurroundings(pSurroundings),
          mStopwatch(pSurroundings.clock),
          mProgress(pSurroundings.errors, pSurroundings.errorsIsTerminal, pSurroundings.clock) {}

    int Run() {
        std::string lError;
        if (!Load(lError))
            return Fail(Escaped(mOptions.file) + ": " + lError);
        // Here rather than inside, so that giving the document back counts as well.
        mStopwatch.Lap("build");
        PrintWarnings();
        if (mOptions.dot) {
            if (!PrintGraph(lError))
                return Fail(lError);
        } else if (mOptions.tree && !PrintTree(lError)) {
            return Fail(lError);
        }
        mProgress.Clear();
        mStopwatch.Lap("print");
        if (mOptions.stats)
            PrintStats(mSurroundings.output, CountScene(mScene), GetMemoryUse(), mStopwatch.Phases());
        if (!mSurroundings.output.flush())
            return Fail("cannot write the output");
        return eExitDone;
    }

private:
    int Fail(const std::string& pError) {
        mProgress.Clear();
        mSurroundings.errors << "lyrinspect: " << pError << '\n';
        return eExitUnreadable;
    }

    bool Load(std::string& pError) {
        std::string lBytes;
        Container lContainer;
        Json lDocument;
        mProgress.Begin("reading", 0);
        if (!ReadFileBytes(mOptions.file, kMaxFileBytes, lBytes, pError) ||
            !SplitContainer(lBytes, lContainer, mWarnings, pError))
            return false;
        mStopwatch.Lap("read");
        mProgress.Begin("parsing", 0);
        if (!ParseDocument(lContainer.json, lDocument, mWarnings, pError))
            return false;
        mStopwatch.Lap("parse");
        const std::string lFolder = FolderOf(mOptions.file);
        const Buffers lBuffers(lDocument, {lContainer.binary, lContainer.hasBinary, lFolder}, mWarnings);
        mStopwatch.Lap("buffers");
        const BuildInput lInput{lDocument, lBuffers, lFolder, mOptions.separator};
        Builder(lInput, mScene, mWarnings, mProgress).Build();
        pError = "not enough memory";
        return mScene.IsComplete();
    }

    void PrintWarnings() {
        mProgress.Clear();
        for (const std::string& lText : mWarnings.Texts())
            mSurroundings.errors << "lyrinspect: warning: " << lText << '\n';
        const std::size_t lMore = mWarnings.Count() - mWarnings.Texts().size();
        if (lMore > 0)
            mSurroundings.errors << "lyrinspect: warning: and " << Counted(lMore, "more warning") << '\n';
    }

    // The roots of the families that the objects' pages belong to.
    std::vector<KLyrPropertyHandle> Families() const {
        std::vector<KLyrPropertyHandle> lRoots;
        for (std::size_t i = 0; i < kKindCount; ++i)
            lRoots.push_back(mScene.PrototypeObject(static_cast<ObjectKind>(i)).root);
        return lRoots;
    }

    bool PrintGraph(std::string& pError) const {
        const std::vector<KLyrPropertyHandle> lRoots = Families();
        pError = "not enough memory";
        return lyrDumpFamilyConnectionsAsDot(mSurroundings.output, lRoots.data(), static_cast<int>(lRoots.size()),
                                             mOptions.separator);
    }

    KLyrDumpStyle DumpStyle() const {
        KLyrDumpStyle lStyle;
        lStyle.mSeparator = mOptions.separator;
        lStyle.mOnlyOwn = mOptions.onlyOverrides;
        return lStyle;
    }

    bool PrintPages(std::string& pError) const {
        const std::vector<KLyrPropertyHandle> lRoots = Families();
        pError = "not enough memory";
        return lyrDumpFamilies(mSurroundings.output, lRoots.data(), static_cast<int>(lRoots.size()), DumpStyle());
    }

    bool PrintTree(std::string& pError) {
        if (mOptions.dump && !mOptions.hasObject && !mOptions.hasFind)
            return PrintPages(pError);
        const PrintStyle lStyle{mOptions.separator, mOptions.onlyOverrides};
        Printer lPrinter(mSurroundings.output, lStyle);
        if (!mSurroundings.outputIsTerminal)
            mProgress.Begin("printing", mScene.ObjectCount());
        if (!mOptions.hasObject && !mOptions.hasFind)
            PrintSummary(mSurroundings.output, mOptions.file, mScene);
        if (mOptions.prototypes) {
            for (std::size_t i = 0; i < kKindCount; ++i)
                lPrinter.PrintPrototype(mScene.PrototypeObject(static_cast<ObjectKind>(i)));
        }
        bool lSelected = false;
        bool lPrinted = false;
        for (std::size_t i = 0; i < kKindCount; ++i) {
            for (const SceneObject* lObject : mScene.Objects(static_cast<ObjectKind>(i))) {
                if (!mSurroundings.outputIsTerminal)
                    mProgress.Step();
                if (!IsSelected(*lObject))
                    continue;
                lSelected = true;
                lPrinted = PrintObject(lPrinter, *lObject) || lPrinted;
            }
        }
        if (lPrinted)
            return true;
        pError = Escaped(mOptions.file) + ": ";
        pError += lSelected ? "no property " + Quoted(mOptions.find) : "no object " + Quoted(mOptions.object);
        return false;
    }

    bool IsSelected(const SceneObject& pObject) const {
        return !mOptions.hasObject || AddressOf(pObject) == mOptions.object ||
               (pObject.name == mOptions.object && pObject.isNamed);
    }

    bool PrintObject(Printer& pPrinter, const SceneObject& pObject) const {
        if (!mOptions.hasFind) {
            PrintBelow(pPrinter, pObject, pObject.root);
            return true;
        }
        const char lSeparators[] = {mOptions.separator, '\0'};
        const KLyrPropertyHandle lFound = pObject.root.Find(mOptions.find.c_str(), lSeparators, true);
        if (lFound.Valid())
            PrintBelow(pPrinter, pObject, lFound);
        return lFound.Valid();
    }

    void PrintBelow(Printer& pPrinter, const SceneObject& pObject, const KLyrPropertyHandle& pTop) const {
        if (mOptions.dump) {
            if (!lyrDump(mSurroundings.output, pTop, DumpStyle()))
                throw std::bad_alloc();
        } else if (pTop == pObject.root) {
            pPrinter.Print(pObject);
        } else {
            pPrinter.Print(pObject, pTop);
        }
    }

    const Options& mOptions;
    const Surroundings& mSurroundings;
    Stopwatch mStopwatch;
    Progress mProgress;
    Warnings mWarnings;
    Scene mScene;
};

}  // namespace

int RunInspector(int pCount, const char* const* pArguments, const Surroundings& pSurroundings) {
    try {
        Options lOptions;
        switch (ParseOptions(pCount, pArguments, lOptions, pSurroundings.output, pSurroundings.errors)) {
            case Parsed::eDone:
                return eExitDone;
            case Parsed::eWrongUsage:
                return eExitUsage;
            default:
                return Inspection(lOptions, pSurroundings).Run();
        }
    } catch (const std::bad_alloc&) {
        pSurroundings.errors << "lyrinspect: not enough memory\n";
        return eExitUnreadable;
    } catch (const std::exception& lError) {
        pSurroundings.errors << "lyrinspect: " << Escaped(lError.what()) << '\n';
        return eExitUnreadable;
    }
}

}  // namespace lyrsdk::inspect
