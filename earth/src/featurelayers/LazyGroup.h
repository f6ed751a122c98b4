#pragma once
#include <osg/Group>
#include <osg/NodeVisitor>

namespace osgEarth::Features {
/// Work that makes a node away from the frame loop. Run once, on a thread of
/// the database pager.
class BackgroundBuild : public osg::Referenced
{
public:
    /// Never null; an empty node when there is nothing to show.
    virtual osg::ref_ptr<osg::Node> build() = 0;

protected:
    ~BackgroundBuild() override = default;
};

/// A group whose only child is made in the background when the group is first
/// seen; the view's database pager runs the work and adds the child on its
/// update traversal. Without a pager the group stays empty.
class LazyGroup : public osg::Group
{
public:
    explicit LazyGroup(BackgroundBuild* work);

    bool isLoaded() const { return getNumChildren() > 0; }
    void traverse(osg::NodeVisitor& nv) override;

protected:
    ~LazyGroup() override = default;

private:
    osg::ref_ptr<osg::Object> _options; ///< carries the work to the pager
    osg::ref_ptr<osg::Referenced> _request;
};
} // namespace osgEarth::Features
