#pragma once
#include <osg/Program>
#include <osg/ref_ptr>

/// Draws the letters of a label and their rim texel by texel. Labels stand on
/// whole pixels at their own size, so nothing is lost, and a software renderer
/// is spared the anisotropic filter that osgText asks for: nine tenths of what
/// a label costs there. Set it on the label with OVERRIDE. Shared while used.
osg::ref_ptr<osg::Program> AxLabelProgram();
