#pragma once
#include <osg/Group>
#include <osg/ref_ptr>
#include <osg/Vec3d>
#include <osg/Vec4f>

#include <QHash>
#include <QMap>

#include <functional>
#include <vector>

class AxScene;

/**
 * Which points of a route are numbered, 1 for the first: as many as the view has room for, chosen anew when
 * it moves. Owned by the route. GUI thread.
 */
class AxRouteNumbers
{
public:
    /// Of a number and of the rim of its letters.
    struct Colors
    {
        osg::Vec4f text{1.0f, 1.0f, 1.0f, 1.0f};
        osg::Vec4f rim{0.1f, 0.1f, 0.1f, 1.0f};

        bool IsUsual() const { return text == Colors().text && rim == Colors().rim; }
    };

    /// Parent of the numbers that are shown.
    osg::Group* Node() const { return node; }
    /// Numbers these geocentric places in place of those before. They are shown with the next Look().
    void SetPlaces(std::vector<osg::Vec3d> points);
    int Count() const { return static_cast<int>(places.size()); }
    const osg::Vec3d& PlaceOf(int index) const { return places[static_cast<std::size_t>(index)]; }
    /// Of the points from `first` to `last`, as far as there are such points, from the next Look() on.
    void SetColors(int first, int last, const Colors& colors);
    Colors ColorsOf(int index) const { return colored.value(index); }
    /// Shows those for which the view has room. `make` gives the node of a number that was not shown, or
    /// null. Nothing without a map.
    void Look(const AxScene& scene, const std::function<osg::ref_ptr<osg::Node>(int)>& make);

private:
    osg::ref_ptr<osg::Group> node = new osg::Group;
    std::vector<osg::Vec3d> places; // geocentric
    QMap<int, Colors> colored;      // that have others than the rest
    QHash<int, osg::ref_ptr<osg::Node>> shown;
};
