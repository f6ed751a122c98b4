#pragma once
#include <osg/Geode>
#include <osg/Geometry>
#include <osg/Image>
#include <osg/PagedLOD>
#include <osg/Texture2D>
#include <osgDB/WriteFile>

#include <QDir>
#include <QFile>
#include <QString>

#include <cmath>
#include <limits>
#include <string>

/// A photogrammetry export made up in a folder: hills over a square, in tiles of two levels.
struct MadeUpExport
{
    QString system = QStringLiteral("EPSG:32613+5773");
    QString origin = QStringLiteral("500000,4100000,100");
    int tilesOnSide = 2;
    double tileSide = 100.0; ///< metres
    int coarse = 10;         ///< cells on the side of a tile
    int fine = 40;
    float finerFrom = 300.0f;        ///< pixels of a tile's diameter
    const char* missingPicture = ""; ///< the name of one that no file has
    bool withBadVertex = false;      ///< in the first tile's coarse level
    QString folder = QString();      ///< set by Write()

    /// Above the origin, of a place to the east and north of it, metres.
    static double HeightAt(double east, double north)
    {
        return 20.0 + 8.0 * std::sin(east / 40.0) * std::cos(north / 40.0);
    }

    osg::ref_ptr<osg::Geometry> Surface(double west, double south, int cells, osg::Image* image) const
    {
        osg::ref_ptr<osg::Vec3Array> vertices = new osg::Vec3Array;
        osg::ref_ptr<osg::Vec2Array> picture = new osg::Vec2Array;
        osg::ref_ptr<osg::DrawElementsUInt> triangles = new osg::DrawElementsUInt(GL_TRIANGLES);
        const auto row = static_cast<unsigned>(cells + 1);
        for (unsigned j = 0; j < row; ++j)
            for (unsigned i = 0; i < row; ++i) {
                const double east = west + tileSide * i / cells;
                const double north = south + tileSide * j / cells;
                vertices->push_back(osg::Vec3d(east, north, HeightAt(east, north)));
                picture->push_back(osg::Vec2d(double(i) / cells, double(j) / cells));
                if (i + 1 < row && j + 1 < row) {
                    const unsigned at = j * row + i;
                    for (const unsigned corner : {at, at + 1, at + row + 1, at, at + row + 1, at + row})
                        triangles->push_back(corner);
                }
            }
        osg::ref_ptr<osg::Geometry> surface = new osg::Geometry;
        surface->setVertexArray(vertices);
        surface->setTexCoordArray(0, picture);
        surface->addPrimitiveSet(triangles);
        osg::ref_ptr<osg::Texture2D> texture = new osg::Texture2D(image);
        texture->setResizeNonPowerOfTwoHint(false);
        surface->getOrCreateStateSet()->setTextureAttributeAndModes(0, texture);
        return surface;
    }

    static osg::ref_ptr<osg::Image> Picture()
    {
        osg::ref_ptr<osg::Image> image = new osg::Image;
        constexpr int side = 64;
        image->allocateImage(side, side, 1, GL_RGB, GL_UNSIGNED_BYTE);
        for (int y = 0; y < side; ++y)
            for (int x = 0; x < side; ++x) {
                unsigned char* pixel = image->data(static_cast<unsigned>(x), static_cast<unsigned>(y));
                pixel[0] = (x / 8 + y / 8) % 2 != 0 ? 220 : 120;
                pixel[1] = 40;
                pixel[2] = static_cast<unsigned char>(2 * x);
            }
        return image;
    }

    /// The path of its metadata.xml; empty when something could not be written.
    QString Write(const QString& into)
    {
        folder = into;
        QFile metadata(into + QStringLiteral("/metadata.xml"));
        if (!QDir().mkpath(into) || !metadata.open(QIODevice::WriteOnly))
            return {};
        metadata.write(QStringLiteral("<?xml version=\"1.0\" encoding=\"utf-8\"?>\n"
                                      "<ModelMetadata version=\"1\">\n\t<SRS>%1</SRS>\n"
                                      "\t<SRSOrigin>%2</SRSOrigin>\n\t<Texture/>\n</ModelMetadata>\n")
                           .arg(system.toHtmlEscaped(), origin)
                           .toUtf8());
        for (int j = 0; j < tilesOnSide; ++j)
            for (int i = 0; i < tilesOnSide; ++i)
                if (!WriteTile(i, j))
                    return {};
        return metadata.fileName();
    }

private:
    bool WriteTile(int i, int j) const
    {
        const QString name = QStringLiteral("Tile_%1_%2").arg(i).arg(j);
        const QString there = folder + QStringLiteral("/Data/") + name;
        const double west = (i - 0.5 * tilesOnSide) * tileSide;
        const double south = (j - 0.5 * tilesOnSide) * tileSide;
        const osg::ref_ptr<osg::Image> image = Picture();
        osg::ref_ptr<osgDB::Options> inside = new osgDB::Options("WriteImageHint=IncludeData");
        osg::ref_ptr<osg::Geode> finer = new osg::Geode;
        finer->addDrawable(Surface(west, south, fine, image));

        if (*missingPicture) {
            image->setFileName(missingPicture);
            inside->setOptionString("WriteImageHint=UseExternal");
        }
        osg::ref_ptr<osg::Geometry> surface = Surface(west, south, coarse, image);
        if (withBadVertex && i == 0 && j == 0)
            static_cast<osg::Vec3Array&>(*surface->getVertexArray())[0].z() =
                std::numeric_limits<float>::quiet_NaN();
        osg::ref_ptr<osg::Geode> coarser = new osg::Geode;
        coarser->addDrawable(surface);
        osg::ref_ptr<osg::PagedLOD> root = new osg::PagedLOD;
        root->setRangeMode(osg::LOD::PIXEL_SIZE_ON_SCREEN);
        root->setCenterMode(osg::LOD::USER_DEFINED_CENTER);
        root->setCenter(osg::Vec3d(west + 0.5 * tileSide, south + 0.5 * tileSide, 20.0));
        root->setRadius(static_cast<float>(0.75 * tileSide));
        root->addChild(coarser, 0.0f, finerFrom);
        root->setRange(1, finerFrom, std::numeric_limits<float>::max());
        root->setFileName(1, name.toStdString() + "_fine.osgb");
        const auto path = [&there, &name](const char* ending) {
            return QFile::encodeName(there + QLatin1Char('/') + name + QLatin1String(ending)).toStdString();
        };
        const osg::ref_ptr<osgDB::Options> whole = new osgDB::Options("WriteImageHint=IncludeData");
        return QDir().mkpath(there) && osgDB::writeNodeFile(*root, path(".osgb"), inside) &&
               osgDB::writeNodeFile(*finer, path("_fine.osgb"), whole);
    }
};
