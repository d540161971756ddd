// Assembles shader texts: version, defines, includes.
#include "base/ShaderLibrary.h"

#include <sstream>
#include <stdexcept>
#include <utility>

namespace {

const std::pair<const char*, const char*> TEXTS[] = {
#include "shader_texts.inc"
};

const char* findText(const std::string& name) {
    for (const auto& [key, text] : TEXTS) {
        if (name == key) return text;
    }
    throw std::logic_error("there is no shader " + name);
}

void appendText(const std::string& name, std::string& out) {
    static const std::string INCLUDE = "#include \"";
    std::istringstream lines(findText(name));
    for (std::string line; std::getline(lines, line);) {
        if (line.rfind(INCLUDE, 0) == 0) {
            appendText(line.substr(INCLUDE.size(), line.rfind('"') - INCLUDE.size()), out);
        } else {
            out += line + '\n';
        }
    }
}

osg::Shader* makeShader(osg::Shader::Type type, const std::string& file, const std::vector<std::string>& defines) {
    std::string text = "#version 330 compatibility\n";
    for (const std::string& define : defines) text += "#define " + define + "\n";
    appendText(file, text);
    auto* const shader = new osg::Shader(type, text);
    shader->setName(file);
    return shader;
}

}  // namespace

osg::Program* ShaderLibrary::getProgram(const std::string& name, const std::vector<std::string>& defines) {
    std::string key = name;
    for (const std::string& define : defines) key += '|' + define;
    osg::ref_ptr<osg::Program>& program = m_programs[key];
    if (!program) {
        program = new osg::Program;
        program->setName(key);
        program->addShader(makeShader(osg::Shader::VERTEX, name + ".vert.glsl", defines));
        program->addShader(makeShader(osg::Shader::FRAGMENT, name + ".frag.glsl", defines));
    }
    return program;
}
