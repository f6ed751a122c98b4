// axmodels FOLDER: writes the model of each kind of aircraft there, as GetPlaneStringByType() names it.
#include "Airframes.h"

#include <osgDB/WriteFile>

#include <QFile>
#include <QString>

#include <iostream>

int main(int count, char** arguments)
{
    if (count != 2) {
        std::cerr << "axmodels FOLDER\n";
        return 2;
    }
    const QString folder = QFile::decodeName(arguments[1]);
    for (int type = PlaneFixedWing; type <= PlaneObliqueCopter; ++type) {
        const auto kind = static_cast<EPlaneType>(type);
        const osg::ref_ptr<osg::Geode> model = MakeAirframe(kind);
        const QString file = folder + QLatin1Char('/') + GetPlaneStringByType(kind) + QStringLiteral(".osgb");
        model->setName(GetPlaneStringByType(kind).toStdString());
        if (!osgDB::writeNodeFile(*model, QFile::encodeName(file).toStdString())) {
            std::cerr << "axmodels: cannot write " << file.toStdString() << '\n';
            return 1;
        }
    }
    return 0;
}
