#include "text/LetterBatch.h"

#include <algorithm>

namespace osgEarth {
LetterBatch::LetterBatch()
{
    setUseDisplayList(false);
    setUseVertexBufferObjects(true);
    setDataVariance(osg::Object::DYNAMIC);
    setVertexArray(_corners.get());
    setTexCoordArray(0, _places.get(), osg::Array::BIND_PER_VERTEX);
    setColorArray(_fills.get(), osg::Array::BIND_PER_VERTEX);
    setVertexAttribArray(kHaloAttribute, _halos.get(), osg::Array::BIND_PER_VERTEX);
    addPrimitiveSet(_indices.get());
}

void LetterBatch::show(const std::vector<PlacedText>& texts)
{
    if (std::equal(texts.begin(), texts.end(), _shown.begin(), _shown.end(),
                   [](const PlacedText& a, const PlacedText& b) {
                       return a.number == b.number && a.place == b.place;
                   }))
        return;
    _shown = texts;
    _corners->clear();
    _places->clear();
    _fills->clear();
    _halos->clear();
    _indices->clear();
    for (const PlacedText& text : texts)
        append(text);
    _corners->dirty();
    _places->dirty();
    _fills->dirty();
    _halos->dirty();
    _indices->dirty();
    // The arrays share a buffer, in which their places move with the number of letters.
    dirtyGLObjects();
}

void LetterBatch::append(const PlacedText& text)
{
    const auto first = static_cast<unsigned>(_corners->size());
    const osg::Vec3f place(text.place, 0.0f);
    for (const osg::Vec3f& corner : *text.corners)
        _corners->push_back(place + corner);
    for (const unsigned index : *text.indices)
        _indices->push_back(first + index);
    _places->insert(_places->end(), text.places->begin(), text.places->end());
    _fills->insert(_fills->end(), text.fills->begin(), text.fills->end());
    _halos->insert(_halos->end(), text.halos->begin(), text.halos->end());
}
} // namespace osgEarth
