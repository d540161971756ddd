// Uniforms: shader values that change from frame to frame.
#pragma once

#include <osg/StateSet>

/// A uniform that is not yet part of a state.
template <class... Arguments>
osg::Uniform* makeUniform(Arguments... arguments) {
    auto* const uniform = new osg::Uniform(arguments...);
    uniform->setDataVariance(osg::Object::DYNAMIC);
    return uniform;
}

/// Adds a uniform to the state. Arguments: name and value; or type, name and number of array elements.
template <class... Arguments>
osg::Uniform* addUniform(osg::StateSet& state, Arguments... arguments) {
    osg::Uniform* const uniform = makeUniform(arguments...);
    state.addUniform(uniform);
    return uniform;
}
