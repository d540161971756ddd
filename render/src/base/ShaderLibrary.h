// The shader programs by name.
#pragma once

#include <osg/Program>
#include <osg/ref_ptr>

#include <map>
#include <string>
#include <vector>

/// Makes each program once. The texts are in render/shaders and are compiled into the library; a line `#include
/// "x.glsl"` is replaced by that text.
class ShaderLibrary {
public:
    /// The program of "NAME.vert.glsl" and "NAME.frag.glsl", with the defines prepended to both.
    osg::Program* getProgram(const std::string& name, const std::vector<std::string>& defines = {});

private:
    std::map<std::string, osg::ref_ptr<osg::Program>> m_programs;
};
