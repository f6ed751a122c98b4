#include "viewer/AxKeptPicture.h"

#include <osg/GL>

#include <QOpenGLContext>

void AxKeptPicture::Take(const QSize& pixels)
{
    if (pixels.isEmpty())
        return Forget();
    const QOpenGLContext* context = QOpenGLContext::currentContext();
    if (texture == 0 || owner != context) {
        glGenTextures(1, &texture);
        owner = context;
    }
    glBindTexture(GL_TEXTURE_2D, texture);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_NEAREST);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_NEAREST);
    glCopyTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA8, 0, 0, pixels.width(), pixels.height(), 0);
    size = pixels;
}

bool AxKeptPicture::IsFor(const QSize& pixels) const
{
    return texture != 0 && !pixels.isEmpty() && size == pixels && owner == QOpenGLContext::currentContext();
}

void AxKeptPicture::Show(const QPoint& lowerLeft) const
{
    for (const GLenum mode : {GL_ALPHA_TEST, GL_BLEND, GL_COLOR_LOGIC_OP, GL_CULL_FACE, GL_DEPTH_TEST, GL_FOG,
                              GL_LIGHTING, GL_SCISSOR_TEST, GL_STENCIL_TEST})
        glDisable(mode);
    glColorMask(GL_TRUE, GL_TRUE, GL_TRUE, GL_TRUE);
    glPolygonMode(GL_FRONT_AND_BACK, GL_FILL);
    glViewport(lowerLeft.x(), lowerLeft.y(), size.width(), size.height());
    for (const GLenum matrix : {GL_TEXTURE, GL_PROJECTION, GL_MODELVIEW}) {
        glMatrixMode(matrix);
        glPushMatrix();
        glLoadIdentity();
    }
    glEnable(GL_TEXTURE_2D);
    glBindTexture(GL_TEXTURE_2D, texture);
    glTexEnvi(GL_TEXTURE_ENV, GL_TEXTURE_ENV_MODE, GL_REPLACE);
    glBegin(GL_TRIANGLE_STRIP);
    for (const int x : {0, 1})
        for (const int y : {0, 1}) {
            glTexCoord2i(x, y);
            glVertex2i(2 * x - 1, 2 * y - 1);
        }
    glEnd();
    for (const GLenum matrix : {GL_TEXTURE, GL_PROJECTION, GL_MODELVIEW}) {
        glMatrixMode(matrix);
        glPopMatrix();
    }
}

void AxKeptPicture::Release()
{
    if (texture != 0 && owner == QOpenGLContext::currentContext())
        glDeleteTextures(1, &texture);
    texture = 0;
    Forget();
}
