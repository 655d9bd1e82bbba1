// The OpenGL headers as the drawing module uses them: the compatibility API with every entry
// point up to 4.5 declared (Mesa's off-screen library exports them all).
#pragma once

#ifndef GL_GLEXT_PROTOTYPES
#define GL_GLEXT_PROTOTYPES 1
#endif
#include <GL/gl.h>
#include <GL/glext.h>
