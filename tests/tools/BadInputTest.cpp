#include "RunCommand.h"

/// What is wrong with what a user gives, one row for each kind: one clear line, with file and
/// place.
namespace model_walk {
namespace {

struct BadInput {
    const char* name;
    /// Behind `info -q`, in a folder that holds the sample models and what `SetUp` makes.
    const char* arguments;
    int status;
    const char* line;
};

void PrintTo(const BadInput& input, std::ostream* out) {
    *out << input.arguments;
}

class BadInputs : public ModelWalkFixture, public testing::WithParamInterface<BadInput> {
  protected:
    void SetUp() override {
        ModelWalkFixture::SetUp();
        std::filesystem::copy(SAMPLE_MODELS, folder_);
        write("cut.xmi", contentsOf(folder_ / "drone.xmi").substr(0, 700));
        write("unknown.xmi", "<a:b xmlns:a='urn:nowhere'/>");
        write("entities.xmi", "<!DOCTYPE a [<!ENTITY b 'c'>]><a/>");
        write("elsewhere.roots", "# one\nx = nowhere/at/all\n");
        write("wrong.roots", "this is none\n");
        write("bad.zip", "PK\x03\x04rubbish");
        write("cut.xmi.gz", "\x1f\x8b\x08");
        std::filesystem::create_directory(folder_ / "empty");
    }
};

TEST_P(BadInputs, GivesOneLine) {
#ifndef HAS_ARCHIVES
    const std::string input = GetParam().name;
    if (input == "NoArchive" || input == "CompressedAndCutOff") {
        GTEST_SKIP() << "MODELING_NUV0_ARCHIVES is off";
    }
#endif
    const Ended ended =
        run(std::string("info -q ") + GetParam().arguments + " </dev/null", folder_);
    EXPECT_EQ(ended.out, "");
    EXPECT_EQ(ended.status, GetParam().status);
    std::string line = ended.err;
    const std::string folder = std::filesystem::canonical(folder_).string() + "/";
    const std::size_t at = line.find(folder);
    if (at != std::string::npos) line.erase(at, folder.size());
    EXPECT_EQ(line, std::string("model-walk: ") + GetParam().line + "\n");
}

INSTANTIATE_TEST_SUITE_P(
    All, BadInputs,
    testing::Values(
        BadInput{"NoModel", "none.xmi", 4, "none.xmi: cannot be opened: there is no such file"},
        BadInput{"ModelCutOff", "cut.xmi", 4, "model:cut.xmi:9:5: unclosed token"},
        BadInput{"UnknownNamespace", "unknown.xmi", 4,
                 "model:unknown.xmi:1:1: no given metamodel has the namespace 'urn:nowhere' of the "
                 "class 'b'"},
        BadInput{"Entities", "entities.xmi", 4,
                 "model:entities.xmi:1:13: document type declarations are not accepted"},
        BadInput{"NoMetamodel", "drone.xmi -m none.ecore", 4,
                 "none.ecore: cannot be opened: No such file or directory"},
        BadInput{"ModelAsMetamodel", "drone.xmi -m drone.xmi", 4,
                 "drone.xmi:2:1: is not an Ecore metamodel: the root 'Package' is no package of "
                 "Ecore"},
        BadInput{"NoRoot", "drone.xmi --root a=none", 4,
                 "none: cannot be opened as a folder: No such file or directory"},
        BadInput{"RootOfWrongForm", "drone.xmi --root a", 2,
                 "'a' behind --root is not of the form NAME=FOLDER"},
        BadInput{"RootOfOddName", "drone.xmi --root a:b=.", 2, "no root may be named 'a:b'"},
        BadInput{"RootInFileIsNotThere", "drone.xmi --roots elsewhere.roots", 4,
                 "elsewhere.roots:2:1: nowhere/at/all: cannot be opened as a folder: No such file "
                 "or directory"},
        BadInput{"RootsFileOfWrongForm", "drone.xmi --roots wrong.roots", 4,
                 "wrong.roots:1:1: a root is written as NAME = PATH"},
        BadInput{"PrefixIntoNoRoot", "drone.xmi --prefix a:=b", 2, "there is no root named 'b'"},
        BadInput{"NoArchive", "bad.zip", 4,
                 "bad.zip: cannot be read as an archive: Not a zip archive"},
        BadInput{"CompressedAndCutOff", "cut.xmi.gz", 4,
                 "model:cut.xmi.gz: is compressed by gzip and is cut off"},
        BadInput{"EmptyFolder", "empty", 2, "there is no model in 'empty'"},
        BadInput{"NothingOnStandardInput", "- -m system.ecore", 4,
                 "model:-:1:1: no XML element found"},
        BadInput{"TooManyElements", "drone.xmi --limit elements=3", 4,
                 "model:drone.xmi:6:7: the file has more than 3 elements"},
        BadInput{"TooDeep", "drone.xmi --limit depth=2", 4,
                 "model:drone.xmi:5:5: elements are nested deeper than 2 levels"},
        BadInput{"OutsideOfItsRoot", "drone.xmi --root model=empty", 4,
                 "../drone.xmi: lies outside of its file root"},
        BadInput{"AliasOfWrongForm", "drone.xmi --namespace urn", 2,
                 "'urn' behind --namespace is not of the form OLD=NEW"},
        BadInput{"NoNumber", "drone.xmi --threads x", 2,
                 "option --threads wants a number, and 'x' is none"}),
    [](const auto& tested) { return tested.param.name; });

}  // namespace
}  // namespace model_walk
