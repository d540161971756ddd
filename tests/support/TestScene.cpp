// Set-up, tear-down and helpers of the test fixture.
#include "support/TestScene.h"

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <stdexcept>

#include "engine/text/Log.h"
#include "engine/text/Package.h"

TestFolder::TestFolder() {
    std::string name = (std::filesystem::temp_directory_path() / "deckview_test_XXXXXX").string();
    if (!mkdtemp(name.data())) throw std::runtime_error("no temporary folder");
    m_path = std::filesystem::canonical(name);
}

TestFolder::~TestFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(m_path, ignored);
}

void TestFolder::write(const std::string& file, const std::string& bytes) const {
    const std::filesystem::path path = m_path / file;
    std::filesystem::create_directories(path.parent_path());
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    out << bytes;
    if (!out.flush()) throw std::runtime_error("cannot write " + path.string());
}

dmat4 randomTransform(Random& random, double reach) {
    const auto triple = [&random](double most) {
        const double x = random.getDouble(-most, most), y = random.getDouble(-most, most);
        return dvec3(x, y, random.getDouble(-most, most));
    };
    const dvec3 place = triple(reach), hpr = triple(180.0);
    return {dquat::fromEulerZXY(hpr), place};
}

double difference(const dmat4& a, const dmat4& b) {
    double most = 0.0;
    for (const dvec3& d : {a.x - b.x, a.y - b.y, a.z - b.z, a.t - b.t}) {
        for (int i = 0; i < 3; ++i) most = std::max(most, std::abs(d[i]));
    }
    return most;
}

SceneTest::SceneTest() {
    jLog::setLevel(jLog::ERROR);
    jLog::setSink([this](jLog::Level, const jString& line) { m_lines.push_back(line); });
    EngineSettings settings;
    settings.root = root().string();
    m_engine = std::make_unique<Engine>(settings);
}

SceneTest::~SceneTest() {
    m_engine.reset();
    jLog::setSink({});
    jLog::setLevel(jLog::MESSAGE);
}

Node* SceneTest::addNode(const jString& name, const dvec3& position, Node* parent) {
    auto node = std::make_unique<Node>();
    node->setName(name);
    node->setPosition(position);
    return parent ? parent->addChild(std::move(node)) : world().addChild(std::move(node));
}

std::unique_ptr<Node> SceneTest::makeNode(const std::string& text) {
    Package package;
    if (!mjl::parse(text, "test", package)) return nullptr;
    return World::LoadNode(package, "data");
}

void SceneTest::run(int frames, double dt) {
    for (int i = 0; i < frames; ++i) {
        m_engine->beginFrame(dt);
        m_engine->step();
        m_engine->endFrame();
    }
}

int SceneTest::countLines(const std::string& part) const {
    return static_cast<int>(std::count_if(
        m_lines.begin(), m_lines.end(), [&](const std::string& line) { return line.find(part) != std::string::npos; }));
}
