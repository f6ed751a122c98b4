#pragma once
#include <osg/Image>
#include <osg/ref_ptr>
#include <osg/StateSet>

#include <QFont>
#include <QHash>
#include <QImage>
#include <QRect>
#include <QString>

#include <vector>

/**
 * The pictures of mark points in one texture: icon, dot, and the names that are shown now, white with a dark
 * rim so that they can be read on any ground. GUI thread.
 */
class AxMarkPictures
{
public:
    /// A picture that all marks share.
    enum Kind
    {
        Icon,
        SelectedIcon, ///< a rim around the icon, larger by that on each side
        Dot,
    };

    AxMarkPictures();
    /// What all pictures are drawn with.
    osg::StateSet* State() const { return state; }
    /// Its place in the texture, pixels from the upper left corner.
    QRect Of(Kind kind) const { return shared[kind]; }
    QSize Size() const; ///< of the texture
    /// The place of a name; empty when there is no room left among those that were asked for since the last
    /// BeginNames().
    QRect OfName(const QString& name);
    void BeginNames() { ++round; }
    /// How many names find room at least.
    static int MostNames();
    /// Of a name's picture, pixels; long names are cut.
    int WidthOf(const QString& name) const;
    static int HeightOfNames();

private:
    QString shortened(const QString& name) const;
    void put(const QImage& picture, const QPoint& place);

    struct Slot
    {
        QString name;
        int width = 0;
        unsigned round = 0;
    };
    const QFont font;
    osg::ref_ptr<osg::Image> image;
    osg::ref_ptr<osg::StateSet> state;
    QRect shared[3];
    std::vector<Slot> places;
    QHash<QString, int> slotOf;
    unsigned round = 0;
};
