#include "tools/lyrinspect/options.h"

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>
#include <ostream>

#include "tools/lyrinspect/text.h"

namespace lyrsdk::inspect {

namespace {

constexpr char kDescription[] =
    "Shows the objects of a glTF 2.0 scene (.gltf or .glb) and their properties.\n\n"
    "Each object is a line with its address and name, followed by a line for each property:\n"
    "own or inherited, type, path, value, flags, limits and connections (<- source, -> destination).\n";

constexpr char kFooter[] =
    "Exit status: 0; 1 when the file cannot be read or what was asked for is not in it; 2 for wrong usage.\n"
    "What is odd in the file but does not keep it from being shown is a warning on the error stream.";

// A separator is one character that can stand in a path: a control character or a part of a longer one cannot.
std::string CheckSeparator(const std::string& pText) {
    const bool lGood = pText.size() == 1 && pText[0] > ' ' && pText[0] < 0x7F;
    return lGood ? std::string() : "needs one visible ASCII character";
}

}  // namespace

Parsed ParseOptions(int pCount, const char* const* pArguments, Options& pOptions, std::ostream& pOutput,
                    std::ostream& pErrors) {
    CLI::App lApp(kDescription, "lyrinspect");
    lApp.footer(kFooter);
    std::string lSeparator = "/";
    bool lNoTree = false;
    lApp.add_option("file", pOptions.file, "The scene")->required()->type_name("SCENE");
    CLI::Option* lObject = lApp.add_option("--object", pOptions.object,
                                           "Only the objects of this name, or the one at this address (node:3)")
                               ->type_name("NAME");
    CLI::Option* lFind = lApp.add_option("--find", pOptions.find, "Only the property at this path and what is below it")
                             ->type_name("PATH");
    lApp.add_option("--separator", lSeparator, "What separates the names of a path; / unless given")
        ->type_name("C")
        ->check(CLI::Validator(CheckSeparator, ""));
    CLI::Option* lOverrides =
        lApp.add_flag("--only-overrides", pOptions.onlyOverrides, "Only what an object does not inherit");
    CLI::Option* lStats = lApp.add_flag("--stats", pOptions.stats, "Counts, memory and times behind the tree");
    CLI::Option* lWithout = lApp.add_flag("--no-tree", lNoTree, "Leave the tree out");
    CLI::Option* lPrototypes =
        lApp.add_flag("--prototypes", pOptions.prototypes, "The prototypes too, with labels and enumerations");
    lApp.add_flag("--dump", pOptions.dump, "In place of the tree the library's pages, with what each holds itself")
        ->excludes(lPrototypes)
        ->excludes(lWithout);
    lApp.add_flag("--dot", pOptions.dot, "In place of the tree all connections, as a graph in the DOT language")
        ->excludes("--dump")
        ->excludes(lObject)
        ->excludes(lFind)
        ->excludes(lOverrides)
        ->excludes(lPrototypes)
        ->excludes(lStats)
        ->excludes(lWithout);
    lApp.set_version_flag("--version", "lyrinspect 1.0.0");
    try {
        lApp.parse(pCount, pArguments);
    } catch (const CLI::Success& lAsked) {
        lApp.exit(lAsked, pOutput, pErrors);
        return Parsed::eDone;
    } catch (const CLI::ParseError& lError) {
        pErrors << "lyrinspect: " << Escaped(lError.what()) << "; --help shows the usage\n";
        return Parsed::eWrongUsage;
    }
    pOptions.hasObject = lObject->count() > 0;
    pOptions.hasFind = lFind->count() > 0;
    pOptions.separator = lSeparator[0];
    pOptions.tree = !lNoTree;
    return Parsed::eRun;
}

}  // namespace lyrsdk::inspect
