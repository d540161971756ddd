// Shader values that change from frame to frame.
#pragma once

#include <osg/StateSet>

/// Not yet part of a state.
template <class... Arguments>
osg::Uniform* makeUniform(Arguments... arguments) {
    auto* const uniform = new osg::Uniform(arguments...);
    uniform->setDataVariance(osg::Object::DYNAMIC);
    return uniform;
}

/// Added to the state: a name and a value; or a type, a name and how many an array holds.
template <class... Arguments>
osg::Uniform* addUniform(osg::StateSet& state, Arguments... arguments) {
    osg::Uniform* const uniform = makeUniform(arguments...);
    state.addUniform(uniform);
    return uniform;
}
