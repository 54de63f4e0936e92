#include "RunCommand.h"

/// The form without a question, on the sample model: it answers as it always did, and warns.
namespace model_walk {
namespace {

constexpr const char* warning = "model-walk: without a question it is understood for this release";

class ModelWalk : public ModelWalkFixture {
  protected:
    /// Without the warning, with which everything begins that is not wrong.
    Ended run(const std::string& arguments) const {
        Ended ended = ModelWalkFixture::run(arguments);
        if (ended.err.starts_with(warning)) ended.err.erase(0, ended.err.find('\n') + 1);
        return ended;
    }
    Ended walk(const std::string& options) const {
        return run(options + " system.ecore drone.xmi");
    }
};

std::string golden(const std::string& name) {
    return contentsOf(std::filesystem::path(GOLDEN) / (name + ".txt"));
}

Ended wrong(const std::string& line) {
    return {2, "", "model-walk: " + line + "\n"};
}

struct Run {
    const char* name;
    const char* options;
};

void PrintTo(const Run& run, std::ostream* out) {
    *out << run.options;
}

class ModelWalkOutput : public ModelWalk, public testing::WithParamInterface<Run> {};

TEST_P(ModelWalkOutput, IsAsInTheGoldenFile) {
    EXPECT_EQ(walk(GetParam().options), (Ended{0, golden(GetParam().name), ""}));
}

INSTANTIATE_TEST_SUITE_P(
    All, ModelWalkOutput,
    testing::Values(Run{"composition-pre", "--kind composition --order pre"},
                    Run{"composition-post", "-k composition -o post"},
                    Run{"composition-breadth", "-o breadth"},
                    Run{"subtractive-pre", "--kind subtractive"},
                    Run{"subtractive-post", "--kind subtractive --order post"},
                    Run{"subtractive-breadth", "--kind subtractive --order breadth"},
                    Run{"additive-pre",
                        "-k additive -t Package.packages=0 -t Package.blocks "
                        "-t Block.parts -t Part.type"},
                    Run{"additive-post",
                        "-k additive -t Package.packages=0 -t Package.blocks "
                        "-t Block.parts -t Part.type -o post"},
                    Run{"additive-breadth",
                        "-k additive -t Package.packages=0 -t Package.blocks "
                        "-t Block.parts -t Part.type -o breadth"},
                    Run{"count", "--format count"},
                    Run{"count-subtractive", "--format count --kind subtractive --from drone"},
                    Run{"tsv", "--format tsv --kind subtractive --from rotor --order breadth"},
                    Run{"unique-links", "--kind subtractive --unique links --from battery"},
                    Run{"unique-elements", "--kind subtractive --unique elements --from battery"},
                    Run{"pruned",
                        "--prune Package.packages --prune Block.connectors "
                        "--policy Block.parts=0 --from / --from //@packages.2"}),
    [](const auto& tested) {
        std::string name = tested.param.name;
        for (char& character : name) character = character == '-' ? '_' : character;
        return name;
    });

TEST_F(ModelWalk, PseudoLinksCanBeLeftOut) {
    EXPECT_EQ(walk("--from frame --from camera --pseudo-links off"),
              (Ended{0, "Block'Camera'-[ports]-Port'image'\n", ""}));
}

TEST_F(ModelWalk, InputsAreIdsAndPaths) {
    EXPECT_EQ(walk("-f tsv --from R2 --from //@packages.1/@interfaces.1 --from //Library/Actuator "
                   "--pseudo-links off"),
              (Ended{0,
                     "R2\trefinements\tR2.1\ttrue\nactuator\tports\tactuator.power\ttrue\n"
                     "actuator\tports\tactuator.command\ttrue\n",
                     ""}));
}

TEST_F(ModelWalk, RulesHoldForSubclassesAndTakeQualifiedNames) {
    EXPECT_EQ(walk("-k additive -t system::Block.general --from rotor --pseudo-links off"),
              (Ended{0, "Block'Rotor'-[general]-Block'Actuator'\n", ""}));
}

TEST_F(ModelWalk, MetamodelsMayBeNamedByOption) {
    const Ended positional = walk("-f count");
    EXPECT_EQ(run("-f count --metamodel system.ecore drone.xmi"), positional);
    EXPECT_EQ(run("drone.xmi -m system.ecore -f count"), positional);
}

TEST_F(ModelWalk, TheWarningSaysHowItIsWrittenNow) {
    const Ended ended = ModelWalkFixture::run("-k subtractive system.ecore drone.xmi --from rotor");
    EXPECT_EQ(ended.err, std::string(warning) +
                             " only; now it is: model-walk walk -k subtractive --from rotor -m "
                             "system.ecore drone.xmi\n");
    EXPECT_EQ(ended.status, 0);
}

TEST_F(ModelWalk, UnknownNamesGiveTheNearestOnes) {
    EXPECT_EQ(walk("-k additive -t Blok.parts"),
              wrong("there is no class 'Blok'; nearest: Block, Part, Port"));
    EXPECT_EQ(walk("-k additive -t sistem::Block.parts"),
              wrong("there is no class 'sistem::Block'; nearest: system::Block, system::Port, "
                    "system::Part"));
    EXPECT_EQ(walk("--prune Block.part"),
              wrong("the class Block has no property 'part'; nearest: parts, ports, name"));
    EXPECT_EQ(walk("--from rotr"),
              wrong("there is no element 'rotr' in the model; nearest: rotor, drone, R1"));
    EXPECT_EQ(walk("--from //@packages.7"),
              wrong("there is no element '//@packages.7' in the model; nearest: //@packages.0, "
                    "//@packages.1, //@packages.2"));
    EXPECT_EQ(walk("--from //@packages.1/@blocks.3"),
              wrong("there is no element '//@packages.1/@blocks.3' in the model; nearest: "
                    "//@packages.1/@blocks.0, //@packages.1/@interfaces.0, "
                    "//@packages.1/@interfaces.1"));
}

TEST_F(ModelWalk, WrongOptionsAreOneLine) {
    EXPECT_EQ(walk("--kind everything"),
              wrong("option --kind does not know 'everything'; it knows composition, additive, "
                    "subtractive"));
    EXPECT_EQ(walk("--prune Block"), wrong("'Block' is not of the form Class.property"));
    EXPECT_EQ(walk("--policy Block.parts"),
              wrong("'Block.parts' is not of the form Class.property=N"));
    EXPECT_EQ(walk("--policy Block.parts=7"),
              wrong("the policy in 'Block.parts=7' is none of 0, 1, 2"));
    EXPECT_EQ(walk("--prune Block.massInGrams"),
              wrong("the property in 'Block.massInGrams' holds values, no links to follow"));
    EXPECT_EQ(walk("--traverse Block.parts"),
              wrong("--traverse needs --kind additive; the other kinds take --prune"));
    EXPECT_EQ(walk("-k additive --prune Block.parts"),
              wrong("--prune needs --kind composition or subtractive; additive takes --traverse"));
    EXPECT_EQ(run("drone.xmi"), wrong("a metamodel and a model are needed; see model-walk --help"));
    EXPECT_EQ(run("-k additive"), wrong("the model file is missing; see model-walk --help"));
    EXPECT_EQ(walk("-f json"), wrong("option --format does not know 'json' without a question; it "
                                     "knows text, tsv, count"));
    EXPECT_EQ(walk("--unknown").status, 2);
}

TEST_F(ModelWalk, UnreadableFilesAreOneLine) {
    EXPECT_EQ(run("none.ecore drone.xmi"),
              (Ended{1, "", "none.ecore: cannot be opened: No such file or directory\n"}));
    EXPECT_EQ(run("system.ecore ."), (Ended{1, "", ".: cannot be read: Is a directory\n"}));
    EXPECT_EQ(run("drone.xmi drone.xmi"),
              (Ended{1, "",
                     "drone.xmi:2:1: is not an Ecore metamodel: the root 'Package' is no "
                     "package of Ecore\n"}));
    const std::string cut = write(
        "cut.xmi", contentsOf(std::filesystem::path(SAMPLE_MODELS) / "drone.xmi").substr(0, 700));
    EXPECT_EQ(run("system.ecore " + cut).status, 1);
    const std::string dangling =
        write("dangling.xmi", "<s:Part xmlns:s='urn:example:system:1.0'\n type='nothing'/>");
    EXPECT_EQ(run("system.ecore " + dangling),
              (Ended{1, "",
                     dangling + ":1:1: the reference 'nothing' of Part.type leads to nothing in "
                                "this file\n"}));
}

TEST_F(ModelWalk, ReferencesIntoOtherFilesFailUnlessTheyAreSkipped) {
    const std::string model =
        write("m.xmi", "<s:Part xmlns:s='urn:example:system:1.0' name='p' type='other.xmi#b'/>");
    EXPECT_EQ(run("system.ecore " + model),
              (Ended{1, "",
                     model + ":1:1: the reference 'other.xmi#b' of Part.type leads into another "
                             "file\n"}));
    EXPECT_EQ(run("--skip-cross-file system.ecore " + model),
              (Ended{0, "Not an element-[pseudo]-Part'p'\n",
                     model + ": 1 reference into another file is left out\n"}));
}

TEST_F(ModelWalk, ElementsWithoutATextForANameArePrintedByIdentity) {
    const std::string metamodel = write(
        "n.ecore",
        R"(<ecore:EPackage xmlns:xmi="http://www.omg.org/XMI" xmlns:xsi="http://www.w3.org/2001/XMLSchema-instance"
           xmlns:ecore="http://www.eclipse.org/emf/2002/Ecore" name="n" nsURI="urn:n">
           <eClassifiers xsi:type="ecore:EClass" name="Numbered">
             <eStructuralFeatures xsi:type="ecore:EAttribute" name="name"
               eType="ecore:EDataType http://www.eclipse.org/emf/2002/Ecore#//EInt"/>
             <eStructuralFeatures xsi:type="ecore:EReference" name="in" upperBound="-1"
               eType="#//Numbered" containment="true"/></eClassifiers></ecore:EPackage>)");
    const std::string model =
        write("n.xmi", "<n:Numbered xmlns:n='urn:n' name='1'><in name='2'/></n:Numbered>");
    EXPECT_EQ(run(metamodel + " " + model), (Ended{0,
                                                   "Not an element-[pseudo]-Numbered'/'\n"
                                                   "Numbered'/'-[in]-Numbered'//@in.0'\n",
                                                   ""}));
}

TEST_F(ModelWalk, LinesStayLinesWhateverNamesHold) {
    const std::string model =
        write("m.xmi", "<s:Package xmlns:s='urn:example:system:1.0' name='a&#10;b&#9;c'/>");
    EXPECT_EQ(run("system.ecore " + model),
              (Ended{0, "Not an element-[pseudo]-Package'a\\nb\\tc'\n", ""}));
}

TEST_F(ModelWalk, FailureToWriteIsAFailure) {
    if (!std::filesystem::exists("/dev/full")) {
        GTEST_SKIP() << "needs /dev/full, a device to which every write fails; only some systems "
                        "have it";
    }
    const int status = std::system("cd '" SAMPLE_MODELS "' && '" MODEL_WALK
                                   "' system.ecore drone.xmi >/dev/full 2>/dev/null");
    EXPECT_EQ(WEXITSTATUS(status), 1);
}

}  // namespace
}  // namespace model_walk
