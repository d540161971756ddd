// An engine with a runtime root of its own, for short tests.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "engine/core/Engine.h"
#include "engine/math/jMath.h"
#include "engine/scene/Object.h"
#include "engine/scene/World.h"

/// A fresh folder, removed with this object.
class TestFolder {
public:
    TestFolder();
    ~TestFolder();
    TestFolder(const TestFolder&) = delete;
    TestFolder& operator=(const TestFolder&) = delete;

    const std::filesystem::path& getPath() const { return m_path; }
    /// Writes a file in the folder and creates its folders.
    void write(const std::string& file, const std::string& bytes) const;

private:
    std::filesystem::path m_path;
};

/// An object with only a box in its own frame, and one surface that no segment hits.
class BoxObject final : public Object {
public:
    explicit BoxObject(const BoundBox& box) : m_box(box) {}
    int getNumSurfaces() const override { return 1; }
    BoundBox getBoundBox() const override { return m_box; }
    void setBox(const BoundBox& box) {
        m_box = box;
        contentChanged();
    }

private:
    BoundBox m_box;
};

/// A rotation and a translation of up to `reach` metres per axis, without scale.
dmat4 randomTransform(Random& random, double reach);
/// Largest difference of two transforms' elements.
double difference(const dmat4& a, const dmat4& b);

/// The fixture: `TEST_F(SceneTest, …)` with an empty world. Log lines are captured; they are shown when a test fails.
class SceneTest : public ::testing::Test {
protected:
    SceneTest();
    ~SceneTest() override;

    World& world() { return *m_engine->getWorld(); }
    Engine& engine() { return *m_engine; }
    const std::filesystem::path& root() const { return m_folder.getPath(); }
    void write(const std::string& file, const std::string& text) const { m_folder.write(file, text); }

    /// Adds a node to the world, or as a child of `parent`, at a position relative to it.
    Node* addNode(const jString& name, const dvec3& position = {}, Node* parent = nullptr);
    template <class T>
    T* add(std::unique_ptr<T> node) {
        T* const raw = node.get();
        world().addChild(std::unique_ptr<Node>(std::move(node)));
        return raw;
    }
    /// Creates a node from its description in structured text; null where `World::LoadNode` returns null. Paths are
    /// relative to "data".
    static std::unique_ptr<Node> makeNode(const std::string& text);

    /// Runs frames of `dt` seconds as the application does, without a logic.
    void run(int frames, double dt = 1.0 / 60.0);

    const std::vector<std::string>& lines() const { return m_lines; }  ///< logged since the start or `clearLines`
    int countLines(const std::string& part) const;                     ///< number of lines that contain it
    void clearLines() { m_lines.clear(); }

private:
    TestFolder m_folder;
    std::vector<std::string> m_lines;
    std::unique_ptr<Engine> m_engine;
};
