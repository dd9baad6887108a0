// The built tessarine met as a new user meets it, on the demo data in a test's own
// folder: runs that would do something other than asked end before they start, with
// a message that says what to write instead and exit code 2; questions are settled
// before the run (typed answers, Ctrl-D and Ctrl-C on a real terminal); settings
// hold from any folder; the graphics commands say what they changed.

#include <gtest/gtest.h>

#include <signal.h>

#include <nlohmann/json.hpp>

#include <fstream>
#include <functional>
#include <tuple>

#include "CliTestSupport.h"

namespace tess::test {
namespace {

namespace fs = std::filesystem;
using nlohmann::json;

std::string ReadText(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    return std::string((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
}

class UsageOutcomes : public ::testing::Test {
protected:
    void SetUp() override {
        CopyDemoData(dir_.Path());
        fs::create_directories(dir_.Path() / "out");
    }

    std::string Data(const std::string& name) const { return (dir_.Path() / "data" / "demo" / name).string(); }
    std::string Document() const { return dir_ / "data/demo.map.json"; }
    //! Writes a copy of the demo document changed by `edit`, and answers its path.
    std::string EditedDocument(const std::string& name, const std::function<void(json&)>& edit) const {
        json document = json::parse(ReadText(Document()));
        edit(document);
        const std::string path = dir_ / ("data/" + name);
        std::ofstream(path) << document.dump(1);
        return path;
    }
    ProcessResult Run(const std::vector<std::string>& args) const { return RunTessarine(args, dir_.Path()); }
    //! The vertex count that the report of a Shapes to Vertices run gives.
    static std::size_t VertexCount(const ProcessResult& run) {
        const auto at = run.out.find("Contains ");
        return at == std::string::npos ? 0 : std::stoul(run.out.substr(at + 9));
    }
    //! Vertices of all features of a dataset: what a run over all its records makes.
    std::size_t VerticesOf(const std::string& dataset, const std::string& where = "") const {
        std::size_t total = 0;
        for (const FeatureRecord& feature : ReadFeatures(dataset, where))
            total += feature.points.size();
        return total;
    }

    TempDir dir_;
};

TEST_F(UsageOutcomes, AConditionThatSelectsNothingConvertsNothingUnlessAllIsGiven) {
    const ProcessResult none = Run({"vertices", "--layer", Data("trails.shp"), "--where", "KM > 1000", "--output",
                                    "out/none.shp"});
    EXPECT_EQ(none.exitCode, 2) << none.err;
    EXPECT_NE(none.err.find("--where \"KM > 1000\" selects no feature of \"trails\""), std::string::npos) << none.err;
    EXPECT_NE(none.err.find("--all converts all"), std::string::npos) << none.err;
    EXPECT_FALSE(fs::exists(dir_.Path() / "out/none.shp"));

    const ProcessResult all = Run({"vertices", "--layer", Data("trails.shp"), "--where", "KM > 1000", "--all",
                                   "--output", "out/all.shp"});
    ASSERT_EQ(all.exitCode, 0) << all.err;
    EXPECT_EQ(ReadFeatures(dir_ / "out/all.shp").size(), VerticesOf(Data("trails.shp")));

    // The same for the selection a document keeps for its layer.
    const std::string empty = EditedDocument("empty.map.json", [](json& d) {
        d["maps"][0]["layers"][2]["selection"] = {{"where", "KM > 1000"}};
    });
    const ProcessResult document = Run({"vertices", "--doc", empty, "--input", "trails", "--output", "out/d.shp"});
    EXPECT_EQ(document.exitCode, 2) << document.err;
    EXPECT_NE(document.err.find("the document's selection \"KM > 1000\" selects no feature"), std::string::npos)
        << document.err;
    EXPECT_FALSE(fs::exists(dir_.Path() / "out/d.shp"));
    // A selection that holds features is converted as the dialog proposes: the selection only.
    const ProcessResult kept = Run({"vertices", "--doc", Document(), "--input", "trails", "--output", "out/k.shp"});
    ASSERT_EQ(kept.exitCode, 0) << kept.err;
    EXPECT_EQ(VertexCount(kept), VerticesOf(Data("trails.shp"), "KM > 3"));
}

struct OutputCase {
    const char* name;
    const char* output;
    const char* message; // part of the message: what to write instead, or what is missing
};

void PrintTo(const OutputCase& c, std::ostream* os) { *os << c.name; }

class OutputsThatNameNoClass : public UsageOutcomes, public ::testing::WithParamInterface<OutputCase> {};

TEST_P(OutputsThatNameNoClass, AreUsageErrorsBeforeAnythingIsWritten) {
    fs::copy(Data("demo.gdb"), dir_.Path() / "out/o.gdb", fs::copy_options::recursive);
    const ProcessResult run = Run({"vertices", "--layer", Data("trails.shp"), "--output", GetParam().output});
    EXPECT_EQ(run.exitCode, 2) << run.err;
    EXPECT_EQ(run.err.rfind("tessarine: ", 0), 0u) << run.err;
    EXPECT_NE(run.err.find(GetParam().message), std::string::npos) << run.err;
    EXPECT_EQ(run.err.find("Error"), std::string::npos) << run.err;
    EXPECT_TRUE(run.out.empty()) << "nothing ran\n" << run.out;
    // No shapefile appeared under another name in the output folder or in the current one.
    for (const fs::path& folder : {dir_.Path() / "out", dir_.Path()})
        for (const auto& entry : fs::directory_iterator(folder))
            EXPECT_NE(entry.path().extension(), ".shp") << entry.path();
}

INSTANTIATE_TEST_SUITE_P(
    EndToEnd, OutputsThatNameNoClass,
    ::testing::Values(OutputCase{"GeoPackageWithoutClass", "out/o.gpkg", "write out/o.gpkg/NAME"},
                      OutputCase{"GeodatabaseWithoutClass", "out/o.gdb", "write out/o.gdb/NAME"},
                      OutputCase{"MissingGeodatabaseWithoutClass", "out/new.gdb", "write out/new.gdb/NAME"},
                      OutputCase{"ExtensionOfNoFormat", "out/x.txt", "extension .txt; write out/x.shp"},
                      OutputCase{"Folder", "out/", "names a folder"},
                      OutputCase{"MissingGeodatabase", "out/none.gdb/v", "\"out/none.gdb\" is not there"},
                      OutputCase{"MissingFeatureDataset", "out/o.gdb/Survey/v", "has no feature dataset \"Survey\""}),
    [](const auto& info) { return std::string(info.param.name); });

TEST_F(UsageOutcomes, ALayerWhoseDataIsMissingIsNamedWithThePathNeverSwappedForAnother) {
    // The document's chosen layer is parcels; its data has gone.
    const std::string missing = EditedDocument("missing.map.json", [](json& d) {
        d["maps"][0]["layers"][3]["source"]["dataset"] = "gone";
    });
    const std::string path = (dir_.Path() / "data/demo/gone.shp").string();
    for (const std::vector<std::string>& args :
         {std::vector<std::string>{"vertices", "--doc", missing, "--output", "out/m.shp"},
          std::vector<std::string>{"vertices", "--doc", missing, "--input", "parcels", "--output", "out/m.shp"}}) {
        const ProcessResult run = Run(args);
        EXPECT_EQ(run.exitCode, 2) << run.err;
        EXPECT_NE(run.err.find("\"parcels\" cannot be converted: its data is missing at " + path), std::string::npos)
            << run.err;
        EXPECT_FALSE(fs::exists(dir_.Path() / "out/m.shp"));
    }
}

TEST_F(UsageOutcomes, LayersOfOneNameAreToldApartByTheirPlaceFromTheTop) {
    const std::vector<std::string> layers{"vertices", "--layer", Data("parcels.shp") + ":roads", "--layer",
                                          Data("trails.shp") + ":roads"};
    auto with = [&layers](std::vector<std::string> more) {
        std::vector<std::string> args = layers;
        args.insert(args.end(), more.begin(), more.end());
        return args;
    };
    const ProcessResult ambiguous = Run(with({"--input", "roads", "--output", "out/r.shp"}));
    EXPECT_EQ(ambiguous.exitCode, 2) << ambiguous.err;
    EXPECT_NE(ambiguous.err.find("2 layers named \"roads\""), std::string::npos) << ambiguous.err;
    EXPECT_NE(ambiguous.err.find("--input roads:1 (" + Data("parcels.shp") + ") or roads:2 (" + Data("trails.shp")),
              std::string::npos)
        << ambiguous.err;

    const ProcessResult second = Run(with({"--input", "roads:2", "--output", "out/r2.shp"}));
    ASSERT_EQ(second.exitCode, 0) << second.err;
    EXPECT_EQ(ReadFeatures(dir_ / "out/r2.shp").size(), VerticesOf(Data("trails.shp")));
    const ProcessResult first = Run(with({"--input", "roads:1", "--output", "out/r1.shp"}));
    ASSERT_EQ(first.exitCode, 0) << first.err;
    EXPECT_EQ(ReadFeatures(dir_ / "out/r1.shp").size(), VerticesOf(Data("parcels.shp")));
    // Without --input the first --layer is the one converted, although the second bears its name.
    const ProcessResult byDefault = Run(with({"--output", "out/r0.shp"}));
    ASSERT_EQ(byDefault.exitCode, 0) << byDefault.err;
    EXPECT_EQ(ReadFeatures(dir_ / "out/r0.shp").size(), VerticesOf(Data("parcels.shp")));

    const ProcessResult third = Run(with({"--input", "roads:3"}));
    EXPECT_EQ(third.exitCode, 2) << third.err;
    EXPECT_NE(third.err.find("not 3"), std::string::npos) << third.err;

    // Points are no input of Shapes to Vertices: the list shows one "x" for two layers, which
    // cannot be matched; --input is refused, the first --layer is noted as not taken.
    const std::vector<std::string> mixed{"vertices", "--layer", Data("wells.shp") + ":x", "--layer",
                                         Data("trails.shp") + ":x", "--output", "out/x.shp"};
    std::vector<std::string> demanded = mixed;
    demanded.insert(demanded.end(), {"--input", "x:2"});
    const ProcessResult refused = Run(demanded);
    EXPECT_EQ(refused.exitCode, 2) << refused.err;
    EXPECT_NE(refused.err.find("2 layers are named \"x\" and \"Shapes to Vertices\" takes 1 of them"),
              std::string::npos)
        << refused.err;
    const ProcessResult noted = Run(mixed);
    ASSERT_EQ(noted.exitCode, 0) << noted.err;
    EXPECT_NE(noted.err.find("the first it lists is converted"), std::string::npos) << noted.err;
    EXPECT_EQ(ReadFeatures(dir_ / "out/x.shp").size(), VerticesOf(Data("trails.shp")));
}

TEST_F(UsageOutcomes, AFirstLayerOfAKindTheCommandDoesNotTakeIsNotedNotConvertedInSilence) {
    const ProcessResult run = Run({"vertices", "--layer", Data("wells.shp"), "--layer", Data("trails.shp"),
                                   "--output", "out/w.shp"});
    ASSERT_EQ(run.exitCode, 0) << run.err;
    EXPECT_NE(run.err.find("the first --layer, \"wells\", is not one that \"Shapes to Vertices\" takes; the dialog "
                           "chose \"trails\""),
              std::string::npos)
        << run.err;
}

TEST_F(UsageOutcomes, SavedSettingsHoldTheOutputFolderFromAnyFolder) {
    const ProcessResult first =
        Run({"vertices", "--doc", "data/demo.map.json", "--input", "trails", "--output", "out/t.shp", "--save"});
    ASSERT_EQ(first.exitCode, 0) << first.err;
    // The next run starts elsewhere, without --output: the dialog proposes the last run's folder.
    const fs::path elsewhere = dir_.Path() / "elsewhere";
    fs::create_directories(elsewhere);
    const ProcessResult next =
        RunTessarine({"vertices", "--doc", Document(), "--input", "samples", "--yes"}, elsewhere);
    ASSERT_EQ(next.exitCode, 0) << next.err;
    EXPECT_TRUE(fs::exists(dir_.Path() / "out/vertex.shp")) << next.out;
    EXPECT_FALSE(fs::exists(dir_.Path() / "data/vertex.shp")) << "the document's folder is the fallback";
    // The document's own data paths stay relative to it.
    EXPECT_NE(ReadText(Document()).find("\"workspace\": \"demo\""), std::string::npos);
}

TEST_F(UsageOutcomes, AnOutputThatIsThereIsReplacedOnlyWhenTheUserSaysSo) {
    const std::vector<std::string> args{"vertices", "--layer", Data("trails.shp"), "--output", "out/fr.shp",
                                        "--progress", "none"};
    ASSERT_EQ(Run(args).exitCode, 0);
    const std::string before = ReadText(dir_.Path() / "out/fr.dbf");
    auto expectKept = [&](const ProcessResult& run, int code, const std::string& message) {
        EXPECT_EQ(run.exitCode, code) << run.err;
        EXPECT_NE(run.err.find(message), std::string::npos) << run.err;
        EXPECT_EQ(run.err.find("Error 91"), std::string::npos) << run.err;
        EXPECT_EQ(run.out.find("Successful"), std::string::npos) << run.out;
        EXPECT_EQ(ReadText(dir_.Path() / "out/fr.dbf"), before);
    };
    std::vector<std::string> no = args;
    no.push_back("--no");
    expectKept(Run(no), 2, "out/fr.shp exists and was not replaced (--yes replaces it)");
    expectKept(Run(args), 2, "out/fr.shp exists and was not replaced: there is no terminal to ask");

    // On a terminal the question comes before the run: n and Ctrl-D decline, Ctrl-C cancels.
    for (const auto& [keys, code, message] : {std::tuple{"n\n", 2, "exists and was not replaced"},
                                              std::tuple{"\x04", 2, "exists and was not replaced"},
                                              std::tuple{"", 3, "cancelled; nothing was run"}}) {
        Child child(args, dir_.Path(), "", ChildInput::Terminal);
        ASSERT_TRUE(child.WaitForErr("Yes or No? [y/n]")) << child.Finish().err;
        if (*keys)
            child.Type(keys);
        else
            ::kill(child.Pid(), SIGINT);
        expectKept(child.Finish(), code, message);
    }
    // Not even --yes replaces what a layer of the map reads: the input, here.
    const std::string input = ReadText(Data("trails.shp"));
    const ProcessResult itself = Run({"vertices", "--layer", Data("trails.shp"), "--output", Data("trails"), "--yes"});
    EXPECT_EQ(itself.exitCode, 2) << itself.err;
    EXPECT_NE(itself.err.find("is the data of the map's layer \"trails\""), std::string::npos) << itself.err;
    EXPECT_EQ(ReadText(Data("trails.shp")), input);

    // A Yes typed in replaces it, and the run's own question is not asked again.
    Child child(args, dir_.Path(), "", ChildInput::Terminal);
    ASSERT_TRUE(child.WaitForErr("Yes or No? [y/n]")) << child.Finish().err;
    child.Type("y\n");
    const ProcessResult replaced = child.Finish();
    EXPECT_EQ(replaced.exitCode, 0) << replaced.err;
    EXPECT_EQ(replaced.err.find("Feature Class Already Exists"), std::string::npos) << replaced.err;
    EXPECT_NE(replaced.out.find("Shapes to Vertices Successful:"), std::string::npos) << replaced.out;
}

TEST_F(UsageOutcomes, ReportAndDocumentPlacesAreCheckedBeforeTheOutputIsReplaced) {
    const std::vector<std::string> args{"vertices", "--doc", Document(), "--input", "trails", "--output",
                                        "out/fr.shp", "--yes"};
    ASSERT_EQ(Run(args).exitCode, 0);
    const std::string before = ReadText(dir_.Path() / "out/fr.dbf");
    for (const auto& [option, place, message] :
         {std::tuple{"--report", "nowhere/r.rtf", "--report: the folder \"nowhere\" is not there"},
          std::tuple{"--report", "out", "--report: \"out\" is a folder"},
          std::tuple{"--save", "nowhere/m.map.json", "--save: the folder \"nowhere\" is not there"}}) {
        std::vector<std::string> more = args;
        more.insert(more.end(), {option, place});
        const ProcessResult run = Run(more);
        EXPECT_EQ(run.exitCode, 2) << run.err;
        EXPECT_NE(run.err.find(message), std::string::npos) << run.err;
        EXPECT_EQ(ReadText(dir_.Path() / "out/fr.dbf"), before) << option << " " << place;
    }
}

TEST_F(UsageOutcomes, GraphicsCommandsSayWhatChangedAndThatTheFileStaysWithoutSave) {
    const ProcessResult all = Run({"graphics", "select-all", "--doc", Document()});
    ASSERT_EQ(all.exitCode, 0) << all.err;
    EXPECT_EQ(all.out, "13 of 13 graphic elements selected (before: 2)\n");
    EXPECT_NE(all.err.find("on disk was not changed (--save writes the changes into it)"), std::string::npos)
        << all.err;

    const ProcessResult zoom = Run({"graphics", "zoom", "--doc", Document(), "--save"});
    ASSERT_EQ(zoom.exitCode, 0) << zoom.err;
    EXPECT_NE(zoom.out.find("2 of 13 graphic elements selected (unchanged)\nMap extent: 10.12 44.16 13.48 45.84"),
              std::string::npos)
        << zoom.out;
    EXPECT_EQ(zoom.err.find("not changed"), std::string::npos) << zoom.err;
}

} // namespace
} // namespace tess::test
