// Structured text, packages, paths, the log and byte readers.
#include <gtest/gtest.h>

#include "engine/core/Engine.h"
#include "engine/text/BufferReader.h"
#include "engine/text/Log.h"
#include "engine/text/Package.h"
#include "support/TestScene.h"

namespace {

/// Collects the log's lines while it lives.
class Lines {
public:
    Lines() {
        jLog::setSink([this](jLog::Level, const jString& line) { lines.append(line); });
    }
    ~Lines() { jLog::setSink({}); }
    jVector<jString> lines;
};

constexpr const char* SAMPLE = R"({
    // comment
    "name" : "deck", /* another
    over lines */ "count": 7,
    "ratio": 2.5, "on": true, "none": null,
    "place": [112.35, 16.84, 0],
    "nested": { "deep": { "key": "value" } },
    "mixed": [1, "two", 3]
})";

}  // namespace

TEST(Mjl, ReadsValuesInFileOrderWithTheirLinesAndTypes) {
    Package p;
    ASSERT_TRUE(mjl::parse(SAMPLE, "sample", p));
    EXPECT_EQ(p.getString("name"), "deck");
    EXPECT_EQ(p.getInt("count"), 7);
    EXPECT_EQ(p.getPackage("nested")->getPackage("deep")->getString("key"), "value");
    const char* const order[] = {"name", "count", "ratio", "on", "none", "place", "nested", "mixed"};
    ASSERT_EQ(p.size(), 8);
    for (int i = 0; i < 8; ++i) EXPECT_EQ(p[i].getName(), order[i]);
    EXPECT_EQ(p.getItem("place")->getLine(), 6);

    // Another type reads as the default.
    Lines log;
    EXPECT_EQ(p.getInt("name"), 0);
    EXPECT_EQ(p.getInt("name"), 0);
    ASSERT_EQ(log.lines.size(), 1) << "logged once";
    EXPECT_EQ(log.lines[0], "sample:3: \"name\" must be a number");
    EXPECT_EQ(p.getString("count"), "");
    EXPECT_FALSE(p.getBool("count"));
    EXPECT_EQ(p.getPackage("place"), nullptr);
    float out[3] = {9, 9, 9};
    EXPECT_FALSE(p.getFloats("mixed", out, 3));
    EXPECT_FALSE(p.getFloats("place", out, 2));
    EXPECT_EQ(out[0], 9.0f) << "a failed read leaves the buffer alone";
    ASSERT_TRUE(mjl::parse(R"({"huge": 1e300, "long": 99999999999, "negative": -2.9})", "sample", p));
    EXPECT_EQ(p.getInt("huge"), 0);
    EXPECT_EQ(p.getInt("long"), 0);
    EXPECT_EQ(p.getInt("negative"), -2);
}

TEST(Mjl, ErrorsNameFileAndLineAndLeaveNothing) {
    const struct {
        const char* text;
        const char* place;
    } cases[] = {{"", "line 1"},
                 {"{\n\"a\": 1,\n}", "line 3"},
                 {"{\"a\": 1} x", "line 1"},
                 {"{\n\n\"a\": 1e999}", "line 3"},
                 {"{\"a\": \"\n\"}", "line 2"},
                 {"{\"a\": \"\xff\"}", "line 1"},
                 {"{ /* open", "line 1"},
                 {"42", "line 1"}};
    for (const auto& c : cases) {
        Lines log;
        Package p;
        p.item("old").setInt(1);
        EXPECT_FALSE(mjl::parse(c.text, "some.file", p)) << c.text;
        EXPECT_TRUE(p.empty()) << c.text;
        ASSERT_EQ(log.lines.size(), 1) << c.text;
        EXPECT_EQ(log.lines[0].find("some.file: "), 0u) << log.lines[0];
        EXPECT_NE(log.lines[0].find(c.place), std::string::npos) << log.lines[0];
    }
}

TEST_F(SceneTest, TextCutOffAnywhereIsRefusedWhole) {
    const jString text = SAMPLE;
    for (std::size_t n = 0; n < text.size(); ++n) {
        Package p;
        ASSERT_FALSE(mjl::parse(text.substr(0, n), "cut", p)) << n;
        ASSERT_TRUE(p.empty()) << n;
    }
}

TEST(Mjl, DeepNestingIsRefusedWithoutDepthOfItsOwn) {
    Lines log;
    Package p;
    EXPECT_FALSE(mjl::parse("{\"a\":" + std::string(2000000, '['), "deep", p));
    ASSERT_EQ(log.lines.size(), 1);
    EXPECT_NE(log.lines[0].find("64 levels"), std::string::npos);
    EXPECT_TRUE(mjl::parse("{\"a\":" + std::string(60, '[') + std::string(60, ']') + "}", "deep", p));
}

TEST_F(SceneTest, TextFilesAreReadOverriddenAndSaved) {
    write("a.cfg", R"({ "port": 1 })");
    Package p;
    mjl::setOverride("a.cfg", "port", "20");
    mjl::setOverride("b.cfg", "flag", "true");
    ASSERT_TRUE(mjl::open("a.cfg", p, false));
    EXPECT_EQ(p.getInt("port"), 20);
    EXPECT_FALSE(mjl::open("b.cfg", p, false));
    EXPECT_TRUE(p.getBool("flag"));
    EXPECT_EQ(p.size(), 1) << "a second read replaces, it does not merge";
    EXPECT_TRUE(lines().empty()) << "a file that may be missing is no error";
    mjl::clearOverrides();

    ASSERT_TRUE(mjl::open("a.cfg", p, false));
    p.item("list").setArray({});
    ASSERT_TRUE(mjl::save("b.cfg", p, false) && mjl::open("b.cfg", p, true));
    EXPECT_EQ(p.getInt("port"), 1);
    EXPECT_EQ(p.getItem("list")->getType(), Item::ARRAY);
    EXPECT_FALSE(mjl::open("../outside.cfg", p, true));
    EXPECT_FALSE(mjl::save("missing/folder.cfg", p, false));
    EXPECT_EQ(lines().size(), 2u);
}

TEST(Paths, StayUnderTheRoot) {
    EngineSettings settings;
    settings.root = "/some/place";
    const Engine engine(settings);
    const struct {
        const char* path;
        const char* resolved;
    } cases[] = {{"data/a.glb", "/some/place/data/a.glb"},
                 {"data/../config/x", "/some/place/config/x"},
                 {"../place/data", "/some/place/data"},
                 {"../other", ""},
                 {"data/../../x", ""},
                 {"/etc/passwd", ""},
                 {"/some/place/data/b", "/some/place/data/b"},
                 {"/some/placeless", ""}};
    for (const auto& c : cases) EXPECT_EQ(engine.resolvePath(c.path), c.resolved) << c.path;
}

TEST(Log, OnlyImmediateRepeatsOfALineFold) {
    jLog::flush();
    testing::internal::CaptureStderr();
    for (int i = 0; i < 1000; ++i) jLog::warning("again");
    jLog::error("again");
    for (const char* line : {"start", "a", "end", "start", "b", "end"}) jLog::message("%s", line);
    jLog::message("end");
    jLog::flush();
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "warning: again\nwarning: again (999 times more)\nerror: again\n"
              "start\na\nend\nstart\nb\nend\nend (1 times more)\n");
}

TEST(BufferReader, ReadsUnalignedAndZeroBeyondTheEnd) {
    unsigned char bytes[] = {0xff, 1, 0, 0, 0, 0, 0, 0x80, 0x3f, 0xee};
    BufferReader reader(bytes + 1, 9);
    EXPECT_EQ(reader.readInt(), 1);
    EXPECT_EQ(reader.readFloat(), 1.0f);
    EXPECT_EQ(reader.readInt(), 0xee);
    EXPECT_TRUE(reader.isEnd());
    EXPECT_EQ(reader.readDouble(), 0.0);
}
