#include "interaction/models/AxModelVertices.h"

#include <cmath>

AxModelVertices::AxModelVertices(const osg::Array* array)
{
    if (!array)
        return;
    count = array->getNumElements();
    size = static_cast<std::size_t>(array->getDataSize());
    isDouble = array->getDataType() == GL_DOUBLE;
    if ((isDouble || array->getDataType() == GL_FLOAT) && size >= 2 && size <= 4 && count > 0)
        numbers = array->getDataPointer();
}

osg::Vec3d AxModelVertices::operator[](std::size_t i) const
{
    const auto number = [this, i](std::size_t axis) {
        const std::size_t at = i * size + axis;
        return isDouble ? static_cast<const double*>(numbers)[at]
                        : static_cast<double>(static_cast<const float*>(numbers)[at]);
    };
    const osg::Vec3d place(number(0), number(1), size > 2 ? number(2) : 0.0);
    return size == 4 ? place / number(3) : place;
}

bool AxModelVertices::IsPlace(std::size_t i) const
{
    const osg::Vec3d place = (*this)[i];
    return std::isfinite(place.x()) && std::isfinite(place.y()) && std::isfinite(place.z());
}
