#include <AxAlgorthm/CAxVector3D.h>

#include <cmath>

bool CAxVector3D::isNull() const
{
    return m_x == 0.0 && m_y == 0.0 && m_z == 0.0;
}

double CAxVector3D::distanceToPoint(const CAxVector3D& other) const
{
    return std::hypot(m_x - other.m_x, m_y - other.m_y, m_z - other.m_z);
}
