#include <sys/ioctl.h>

#include <algorithm>
#include <array>
#include <csignal>

#include "RunCommand.h"

/// The questions, asked of the sample models as a user asks them.
namespace model_walk {
namespace {

class Questions : public ModelWalkFixture {
  protected:
    static constexpr const char* drone = " drone.xmi ";
    static constexpr const char* fleet = " fleet.xmi ";

    Ended askDrone(const std::string& question, const std::string& rest = {}) const {
        return ask(question + drone + rest);
    }
    Ended askFleet(const std::string& question, const std::string& rest = {}) const {
        return ask(question + fleet + rest);
    }
};

Ended refused(const std::string& line) {
    return {2, "", "model-walk: " + line + "\n"};
}

TEST_F(Questions, EachAnswersByItsStatus) {
    EXPECT_EQ(askDrone("find", "-c Block").status, 0);
    EXPECT_EQ(askDrone("find", "-n nothing").status, 1);
    EXPECT_EQ(askDrone("find", "-c Blok").status, 2);
    EXPECT_EQ(askFleet("contents", "hive").status, 0) << "what is missing is no contents";
    EXPECT_EQ(askFleet("walk", "-k additive -t Block.parts -t Part.type hive").status, 3);
    EXPECT_EQ(
        askFleet("walk", "-k additive -t Block.parts -t Part.type model:drone.xmi#drone").status,
        0);
    EXPECT_EQ(ask("find none.xmi").status, 4);
    EXPECT_EQ(ask("find -m none.ecore drone.xmi").status, 4);
    EXPECT_EQ(ask("find --root a=none drone.xmi").status, 4);
    EXPECT_EQ(ask("find none.xmi").err,
              "model-walk: none.xmi: cannot be opened: there is no such file\n");
}

TEST_F(Questions, TheSummaryNamesOverHowMuchItWasAnswered) {
    EXPECT_EQ(run("find drone.xmi -n Frame").err, "model-walk: 41 elements in 1 file\n");
    EXPECT_EQ(run("find fleet.xmi -n Frame").err,
              "model-walk: 52 elements in 3 files; 1 unresolved, see model-walk findings\n");
    EXPECT_EQ(run("find -q drone.xmi -n Frame").err, "");
}

TEST_F(Questions, WhatIsKnownToBeMissingDoesNotCount) {
    const Ended ended = run("depends fleet.xmi hive --expect-unresolved supplier");
    EXPECT_EQ(ended.status, 0);
    EXPECT_EQ(ended.err, "model-walk: 52 elements in 3 files; 1 unresolved as expected\n");
}

TEST_F(Questions, FindTakesClassNameValueAndPattern) {
    const std::string rotor = "model:drone.xmi#rotor\tBlock'Rotor'\n";
    EXPECT_EQ(askDrone("find", "-c Block -n 'R*r'"), (Ended{0, rotor, ""}));
    EXPECT_EQ(askDrone("find", "-w massInGrams=35"), (Ended{0, rotor, ""}));
    EXPECT_EQ(askDrone("find", "-w 'id~^rotor$'"), (Ended{0, rotor, ""}));
    EXPECT_EQ(askDrone("find", "-c Block -w 'massInGrams~^3' -w massInGrams!=310"),
              (Ended{0, rotor, ""}));
    EXPECT_EQ(askDrone("find", "-c NamedElement --exactly").status, 1);
    EXPECT_EQ(
        askDrone("find", "-c Part -w count -a count -f tsv -n rotors"),
        (Ended{0, "model:drone.xmi#//@packages.2/@blocks.0/@parts.1\tPart\trotors\t4\n", ""}));
    EXPECT_EQ(askDrone("find", "-w mass=1"),
              refused("no class has an attribute 'mass'; nearest: name, id, text"));
    EXPECT_EQ(askDrone("find", "-w 'name~['").status, 2);
}

TEST_F(Questions, WhatOnePrintsTheNextReads) {
    for (const char* format : {"text", "tree", "tsv", "json"}) {
        EXPECT_EQ(ask("contents -q drone.xmi rotor -f " + std::string(format) +
                      " | '" MODEL_WALK "' find -q drone.xmi - -c Port"),
                  (Ended{0,
                         "model:drone.xmi#rotor.power\tPort'power'\n"
                         "model:drone.xmi#rotor.command\tPort'command'\n",
                         ""}))
            << format;
    }
}

TEST_F(Questions, NothingOnStandardInputIsNothingAndNotEverything) {
    EXPECT_EQ(ask("find -q drone.xmi - </dev/null"), (Ended{1, "", ""}));
    EXPECT_EQ(ask("walk -q drone.xmi - </dev/null"), (Ended{1, "", ""}));
}

TEST_F(Questions, DependsTellsWhatLeavesAnElement) {
    EXPECT_EQ(askDrone("depends", "rotor").out,
              "model:drone.xmi#actuator\tBlock'Rotor'-[general]-Block'Actuator'\n"
              "model:drone.xmi#R2.1\tBlock'Rotor'-[satisfies]-Requirement'Redundancy'\n"
              "model:drone.xmi#//@packages.2/@blocks.0/@connectors.0\t"
              "Port'power'-[incoming]-Connector'drive'\n"
              "model:drone.xmi#//@packages.1/@interfaces.0\tPort'power'-[type]-Interface'Power'\n"
              "model:drone.xmi#//@packages.2/@blocks.0/@connectors.2\t"
              "Port'command'-[incoming]-Connector'throttle'\n"
              "model:drone.xmi#//@packages.1/@interfaces.1\tPort'command'-[type]-"
              "Interface'Command'\n");
}

TEST_F(Questions, DependsGoesOnWithinAContainer) {
    const std::string leaving = askDrone("depends", "frame --within //Structure --outside").out;
    EXPECT_EQ(leaving, "model:drone.xmi#R1.2\tBlock'Frame'-[satisfies]-Requirement'Weight'\n");
    EXPECT_EQ(askDrone("depends", "frame --outside"),
              refused("--outside needs --within: without, only what leaves is told anyway"));
}

TEST_F(Questions, IncomingCrossesFiles) {
    EXPECT_EQ(askFleet("incoming", "model:drone.xmi#drone").out,
              "model:fleet.xmi#R10\tRequirement'Parcels'-[satisfiedBy]-Block'Drone'\n"
              "model:fleet.xmi#//@packages.1/@blocks.0/@parts.0\tPart'drones'-[type]-Block'Drone'\n"
              "model:drone.xmi#R1\tRequirement'Flight'-[satisfiedBy]-Block'Drone'\n"
              "model:drone.xmi#R1.2\tRequirement'Weight'-[satisfiedBy]-Block'Drone'\n");
}

TEST_F(Questions, IncomingOfWhatIsInsideLeavesOutWhatIsInside) {
    EXPECT_EQ(askDrone("incoming", "battery --inside --property source").out,
              "model:drone.xmi#//@packages.2/@blocks.0/@connectors.0\t"
              "Connector'drive'-[source]-Port'power'\n"
              "model:drone.xmi#//@packages.2/@blocks.0/@connectors.1\t"
              "Connector'supply'-[source]-Port'power'\n");
    EXPECT_EQ(askDrone("incoming", "rotor --property blocks").out,
              "model:drone.xmi#//@packages.2\tPackage'Structure'-[blocks]-Block'Rotor'\n");
}

TEST_F(Questions, PathIsAShortestOneAndMayGoBackwards) {
    EXPECT_EQ(askFleet("path", "hive model:drone.xmi#battery").out,
              "model:fleet.xmi#hive\tBlock'Hive'\n"
              "model:fleet.xmi#//@packages.1/@blocks.0/@parts.0\t"
              "Block'Hive'-[parts]-Part'drones'\n"
              "model:drone.xmi#drone\tPart'drones'-[type]-Block'Drone'\n"
              "model:drone.xmi#//@packages.2/@blocks.0/@parts.2\t"
              "Block'Drone'-[parts]-Part'energy'\n"
              "model:drone.xmi#battery\tPart'energy'-[type]-Block'Battery'\n");
    EXPECT_EQ(askDrone("path", "//@packages.1/@interfaces.0 rotor"), (Ended{1, "", ""}));
    EXPECT_EQ(askDrone("path", "//@packages.1/@interfaces.0 rotor --undirected").out,
              "model:drone.xmi#//@packages.1/@interfaces.0\tInterface'Power'\n"
              "model:drone.xmi#rotor.power\tPort'power'-[type]-Interface'Power'\n"
              "model:drone.xmi#rotor\tBlock'Rotor'-[ports]-Port'power'\n");
}

TEST_F(Questions, NearTellsEachElementOnceWithItsDistance) {
    EXPECT_EQ(askDrone("near", "battery -s 2").out,
              "model:drone.xmi#battery\t0\tBlock'Battery'\n"
              "model:drone.xmi#R1.1\t1\tBlock'Battery'-[satisfies]-Requirement'Energy'\n"
              "model:drone.xmi#battery.power\t1\tBlock'Battery'-[ports]-Port'power'\n"
              "model:drone.xmi#//@packages.2/@blocks.0/@connectors.0\t2\t"
              "Port'power'-[outgoing]-Connector'drive'\n"
              "model:drone.xmi#//@packages.2/@blocks.0/@connectors.1\t2\t"
              "Port'power'-[outgoing]-Connector'supply'\n"
              "model:drone.xmi#//@packages.1/@interfaces.0\t2\t"
              "Port'power'-[type]-Interface'Power'\n");
    EXPECT_EQ(askDrone("near", "frame --undirected -f count -q").out,
              "elements per class\n        1  Block\n        1  Package\n        1  Part\n"
              "        1  Requirement\nlinks per property\n        1  Package.blocks\n"
              "        1  Part.type\n        1  Requirement.satisfiedBy\n        1  [pseudo]\n"
              "elements reached: 4\nlinks: 4\n");
}

TEST_F(Questions, ImpactTellsWhatLeadsIntoWhatIsDeleted) {
    EXPECT_EQ(askFleet("impact", "model:drone.xmi#battery").out,
              "model:charging.xmi#//@blocks.0/@connectors.0\t"
              "Connector'charge'-[target]-Port'power'\n"
              "model:drone.xmi#R1.1\tRequirement'Energy'-[satisfiedBy]-Block'Battery'\n"
              "model:drone.xmi#//@packages.2/@blocks.0/@parts.2\tPart'energy'-[type]-"
              "Block'Battery'\n"
              "model:drone.xmi#//@packages.2/@blocks.0/@connectors.0\t"
              "Connector'drive'-[source]-Port'power'\n"
              "model:drone.xmi#//@packages.2/@blocks.0/@connectors.1\t"
              "Connector'supply'-[source]-Port'power'\n");
}

TEST_F(Questions, WhyAndWhyNotAnswerForEachOther) {
    EXPECT_EQ(askDrone("why", "rotor.power --from rotor").out,
              "model:drone.xmi#rotor\tBlock'Rotor'\n"
              "model:drone.xmi#rotor.power\tBlock'Rotor'-[ports]-Port'power'\n");
    EXPECT_EQ(askDrone("why", "frame --from rotor").status, 1);
    EXPECT_EQ(
        askDrone("why-not", "actuator --from rotor").out,
        "model:drone.xmi#rotor\tBlock'Rotor'-[general]-Block'Actuator'\tnot followed; it is no "
        "containment\n");
    EXPECT_EQ(askDrone("why-not", "rotor.power --from rotor").status, 1);
    EXPECT_EQ(
        askDrone("why-not", "rotor.power --from rotor -p Block.ports").out,
        "model:drone.xmi#rotor\tBlock'Rotor'-[ports]-Port'power'\tnot followed; cut by rule 1 "
        "(filed under system::Block)\n");
}

TEST_F(Questions, ARuleThatCanNeverMatchIsTold) {
    const std::string reason =
        "model-walk: Rule 1 (traverse system::Block.neighbours, owner system::Block) is on a "
        "derived "
        "property, which no walk follows.\n";
    EXPECT_EQ(askDrone("walk", "-k additive -t Block.neighbours rotor"),
              (Ended{2, "model:drone.xmi#rotor\tBlock'Rotor'\n", reason}));
    // With another rule that does something, it is told all the same.
    EXPECT_EQ(askDrone("walk", "-k additive -t Block.neighbours -t Block.general rotor"),
              (Ended{0,
                     "model:drone.xmi#rotor\tBlock'Rotor'\n"
                     "model:drone.xmi#actuator\tBlock'Rotor'-[general]-Block'Actuator'\n",
                     reason}));
    EXPECT_EQ(askDrone("check", "-k additive -t Block.neighbours").status, 2);
    EXPECT_EQ(askDrone("check", "-k additive -t Block.general"),
              (Ended{0, "every rule does what it says\n", ""}));
}

TEST_F(Questions, AnswersAreColouredOnlyWhereThatIsWanted) {
    EXPECT_EQ(askDrone("find", "-n Frame --color always").out,
              "\x1b[2mmodel:drone.xmi#frame\x1b[0m\t\x1b[36mBlock\x1b[0m\x1b[1m'Frame'\x1b[0m\n");
    EXPECT_EQ(askDrone("find", "-n Frame").out, "model:drone.xmi#frame\tBlock'Frame'\n");
}

TEST_F(Questions, ATreeMarksWhatWasShownBefore) {
    EXPECT_EQ(askDrone("walk",
                       "-k additive -t Part.type -t Block.parts -t Block.general "
                       "-t Block.special -f tree rotor"),
              (Ended{0,
                     "Block'Rotor'\tmodel:drone.xmi#rotor\n"
                     "└─ general: Block'Actuator'\tmodel:drone.xmi#actuator\n"
                     "   ├─ special: Block'Rotor' (*)\tmodel:drone.xmi#rotor\n"
                     "   └─ special: Block'Gimbal'\tmodel:drone.xmi#gimbal\n"
                     "      └─ general: Block'Actuator' (*)\tmodel:drone.xmi#actuator\n",
                     "(*) was shown before\n"}));
}

TEST_F(Questions, NamesCannotChangeATerminal) {
    const std::string model =
        write("m.xmi", "<s:Package xmlns:s='urn:example:system:1.0' name='a&#9;b\\tc\u202E'/>");
    EXPECT_EQ(ask("find -m system.ecore " + model).out,
              "model:m.xmi#/\tPackage'a\\tb\\\\tc\\u{202E}'\n");
    EXPECT_EQ(ask("find -f json -m system.ecore " + model).out,
              "{\"address\":\"model:m.xmi#/\",\"class\":\"Package\","
              "\"name\":\"a\\u0009b\\\\tc\\u202e\"}\n");
}

TEST_F(Questions, AddressesOfOddFilesAreReadBack) {
    const std::string model =
        write("odd #1\t.xmi", "<s:Package xmlns:s='urn:example:system:1.0' name='a'/>");
    const std::string address = "model:odd \\u{23}1\\t.xmi#/";
    EXPECT_EQ(ask("find -m system.ecore '" + model + "'").out, address + "\tPackage'a'\n");
    EXPECT_EQ(ask("contents -m system.ecore '" + model + "' '" + address + "'").out,
              address + "\tPackage'a'\n");
}

TEST_F(Questions, AFullDiskIsAnError) {
    if (!std::filesystem::exists("/dev/full")) GTEST_SKIP() << "needs /dev/full";
    const std::string err = (folder_ / "full").string();
    const Ended ended = run("find -q drone.xmi 2>'" + err + "' >/dev/full; echo $?");
    EXPECT_EQ(ended.out, "5\n");
    EXPECT_EQ(contentsOf(err),
              "model-walk: cannot write to standard output: No space left on device\n");
}

TEST_F(Questions, AClosedPipeIsQuiet) {
    const std::string err = (folder_ / "closed").string();
    const Ended ended = run("find -q drone.xmi 2>'" + err + "' | true");
    EXPECT_EQ(ended.status, 0);
    EXPECT_EQ(contentsOf(err), "");
}

/// A model whose answers do not fit into a pipe.
std::string manyBlocks() {
    std::string model = "<s:Package xmlns:s='urn:example:system:1.0' name='many'>";
    for (int i = 0; i < 4000; ++i) model += "<blocks name='b" + std::to_string(i) + "'/>";
    return model + "</s:Package>";
}

TEST_F(Questions, AnInterruptionEndsItBehindAWholeLine) {
    const std::string model = write("many.xmi", manyBlocks());
    std::array<int, 2> ends = {};
    ASSERT_EQ(pipe(ends.data()), 0);
    const pid_t child = fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        dup2(ends[1], STDOUT_FILENO);
        close(ends[0]);
        close(ends[1]);
        execl(MODEL_WALK, "model-walk", "find", "-q", "-m", SAMPLE_MODELS "/system.ecore",
              model.c_str(), nullptr);
        _exit(127);
    }
    close(ends[1]);
    // Nobody reads, so it stands in the middle of a line as soon as the pipe is full.
    int size = -1;
    for (int before = -2; size <= 0 || size != before;) {
        before = size;
        usleep(50'000);
        ASSERT_EQ(ioctl(ends[0], FIONREAD, &size), 0);
    }
    kill(child, SIGINT);
    std::string shown;
    std::array<char, 4096> piece = {};
    for (ssize_t count = 0; (count = read(ends[0], piece.data(), piece.size())) > 0;) {
        shown.append(piece.data(), static_cast<std::size_t>(count));
    }
    close(ends[0]);
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGINT);
    ASSERT_FALSE(shown.empty());
    EXPECT_EQ(shown.back(), '\n');
    EXPECT_LT(std::count(shown.begin(), shown.end(), '\n'), 4001);
}

TEST_F(Questions, WrongWordsAreOneLine) {
    EXPECT_EQ(run("fnd drone.xmi"),
              refused("there is no question 'fnd'; nearest: find, info, why"));
    EXPECT_EQ(run("help fnd").status, 2);
    EXPECT_EQ(run(""), refused("a question is missing; see model-walk --help"));
    EXPECT_EQ(run("find"), refused("the model is missing; see model-walk help find"));
    EXPECT_EQ(askDrone("find", "--kind additive").status, 2);
    EXPECT_EQ(askDrone("near", "rotor -s far"),
              refused("option --steps wants a number, and 'far' is none"));
    EXPECT_EQ(askDrone("find", "-f xml"),
              refused("option --format does not know 'xml'; it knows text, tree, tsv, json, dot, "
                      "count"));
    EXPECT_EQ(askDrone("path", "rotor"), refused("a path has two ends; see model-walk help path"));
    EXPECT_EQ(askDrone("incoming"), refused("an element is needed; see model-walk help incoming"));
    EXPECT_EQ(askDrone("incoming", "rotr").err,
              "model-walk: there is no element 'rotr' in the model; nearest: rotor, drone, R1\n");
}

TEST_F(Questions, ReferencesAreFollowedOnPaper) {
    EXPECT_EQ(askFleet("resolve", "drone.xmi#rotor").out,
              "lookedUpBy\trelative path\ntried\tmodel:drone.xmi\nfile\tmodel:drone.xmi\n"
              "element\tBlock'Rotor'\tmodel:drone.xmi#rotor\n");
    EXPECT_EQ(askFleet("resolve", "supplier.xmi#antenna"),
              (Ended{1,
                     "lookedUpBy\trelative path\ntried\tmodel:supplier.xmi\nnotFound\tleads to a "
                     "file that is "
                     "in none of the file roots\n",
                     ""}));
}

TEST_F(Questions, AModelComesFromAFileAFolderOrStandardInput) {
    EXPECT_EQ(run("find . -c Package -n Fleet").out, "model:fleet.xmi#/\tPackage'Fleet'\n");
    EXPECT_EQ(run("find - -m system.ecore -n Frame <drone.xmi").out,
              "model:-#frame\tBlock'Frame'\n");
    EXPECT_EQ(run("info --load given fleet.xmi").err,
              "model-walk: 7 elements in 1 file; 4 references into other files left out; 1 "
              "unresolved, see model-walk findings\n");
    EXPECT_EQ(run("info -q --load folder charging.xmi | head -4").out,
              "elements per file\n        4  model:charging.xmi\n       41  model:drone.xmi\n"
              "        7  model:fleet.xmi\n");
    EXPECT_EQ(ask("find -c Block " + folder_.string()).status, 2);
}

TEST_F(Questions, DataIsReadByOthers) {
    if (std::system("command -v python3 >/dev/null && command -v dot >/dev/null") != 0) {
        GTEST_SKIP() << "needs python3 and dot (Graphviz)";
    }
    const std::string model =
        write("odd.xmi",
              "<s:Package xmlns:s='urn:example:system:1.0' name='\u202E&quot;\\&#9;🙂'><blocks "
              "name='&lt;b&gt;'/></s:Package>");
    for (const char* question : {"info", "contents", "find -a '*'"}) {
        const Ended read =
            run(question + (" -q -f json -m system.ecore '" + model) +
                "' | python3 -c 'import json, sys\nfor line in sys.stdin: json.loads(line)'");
        EXPECT_EQ(read, (Ended{0, "", ""})) << question;
    }
    const Ended drawn = run("contents -q -f dot --clusters -m system.ecore '" + model +
                            "' | dot -Tplain | grep -c '^edge\\|^node'");
    EXPECT_EQ(drawn, (Ended{0, "2\n", ""}));
}

TEST_F(Questions, LoadingIsLimited) {
    EXPECT_EQ(ask("info --limit elements=10 drone.xmi").status, 4);
    EXPECT_EQ(ask("info --limit elements=ten drone.xmi"),
              refused("the limit in 'elements=ten' is no number"));
    EXPECT_EQ(ask("info --limit weight=10 drone.xmi").status, 2);
    EXPECT_EQ(ask("info --root model drone.xmi"),
              refused("'model' behind --root is not of the form NAME=FOLDER"));
}

TEST_F(Questions, HelpIsAPageOfEachQuestion) {
    EXPECT_EQ(run("--help").status, 0);
    EXPECT_TRUE(run("help").out.starts_with("model-walk - asks models questions"));
    EXPECT_EQ(run("find --help"), run("help find"));
    EXPECT_EQ(run("--version").status, 0);
}

}  // namespace
}  // namespace model_walk
