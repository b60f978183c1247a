# SPDX-License-Identifier: MIT
# Qt's packages ask for OpenGL, which the program does not use and which is not available here.
set(WrapOpenGL_FOUND TRUE)
if(NOT TARGET WrapOpenGL::WrapOpenGL)
    add_library(WrapOpenGL::WrapOpenGL INTERFACE IMPORTED)
endif()
