#include <AxData/geofiles/AxGeoKml.h>
#include <AxData/geofiles/AxGeoText.h>

#include <QMap>
#include <QTextCodec>
#include <QXmlStreamReader>

#include <cpl_string.h>
#include <cpl_vsi.h>

#include <algorithm>
#include <memory>

namespace {
constexpr int mostElements = 3000000;
constexpr int deepestElement = 100;

QString TooLarge()
{
    return AX_GEO_TEXT("Its text has more than %1 MB.").arg(axMostGeoText / 1024 / 1024);
}

/// In UTF-8 whatever its declaration says, which goes then.
void ToUtf8(QByteArray& text, const QString& encoding)
{
    QTextCodec* codec = QTextCodec::codecForName(encoding.toLatin1());
    if (encoding.isEmpty() || !codec || codec->name() == "UTF-8")
        return;
    QString decoded = codec->toUnicode(text);
    if (decoded.startsWith(QLatin1String("<?xml")))
        decoded.remove(0, decoded.indexOf(QLatin1String("?>")) + 2);
    text = decoded.toUtf8();
}

/// What people see in a KML file and what is none of its shapes.
bool IsPassedOver(const QString& element)
{
    static const QStringList names{QStringLiteral("NetworkLink"),   QStringLiteral("GroundOverlay"),
                                   QStringLiteral("ScreenOverlay"), QStringLiteral("PhotoOverlay"),
                                   QStringLiteral("Model"),         QStringLiteral("Track"),
                                   QStringLiteral("MultiTrack"),    QStringLiteral("Tour")};
    return names.contains(element);
}
} // namespace

QString AxPrepareKml(QByteArray& text, QStringList& notes)
{
    const QString tooLarge = AxGeoTooLarge(text.size());
    if (!tooLarge.isEmpty())
        return tooLarge;
    QXmlStreamReader xml(text);
    xml.setNamespaceProcessing(false); // prefixes are often left undeclared
    QMap<QString, int> passedOver;
    QString encoding;
    int depth = 0;
    int elements = 0;
    while (!xml.atEnd()) {
        switch (xml.readNext()) {
        case QXmlStreamReader::StartDocument:
            encoding = xml.documentEncoding().toString();
            break;
        case QXmlStreamReader::DTD:
            if (!xml.entityDeclarations().isEmpty())
                return AX_GEO_TEXT("It declares entities of its own, which no KML file needs.");
            break;
        case QXmlStreamReader::StartElement: {
            if (++depth > deepestElement)
                return AX_GEO_TEXT("Line %1: elements are nested too deep.").arg(xml.lineNumber());
            if (++elements > mostElements)
                return AX_GEO_TEXT("It has more than %1 elements.").arg(mostElements);
            const QString element = xml.name().toString().section(QLatin1Char(':'), -1);
            if (IsPassedOver(element))
                ++passedOver[element];
            break;
        }
        case QXmlStreamReader::EndElement:
            --depth;
            break;
        default:
            break;
        }
    }
    if (xml.hasError())
        return AX_GEO_TEXT("Line %1: %2").arg(xml.lineNumber()).arg(xml.errorString());
    for (auto entry = passedOver.cbegin(); entry != passedOver.cend(); ++entry)
        notes += AX_GEO_TEXT("Elements of KML that are not taken over: %1 (%2).")
                     .arg(entry.key())
                     .arg(entry.value());
    ToUtf8(text, encoding);
    return {};
}

QString AxUnpackKmz(const QByteArray& gdalName, QByteArray& text, QStringList& notes)
{
    constexpr int deepestFolder = 3;
    constexpr int mostMembers = 10000;
    const QByteArray archive = "/vsizip/{" + gdalName + '}';
    std::unique_ptr<VSIDIR, int (*)(VSIDIR*)> folder(VSIOpenDir(archive.constData(), deepestFolder, nullptr),
                                                     [](VSIDIR* open) {
                                                         VSICloseDir(open);
                                                         return 0;
                                                     });
    if (!folder)
        return AX_GEO_TEXT("It is no KMZ file.");
    QByteArray member;
    int documents = 0;
    int members = 0;
    while (const VSIDIREntry* entry = VSIGetNextDirEntry(folder.get())) {
        if (++members > mostMembers)
            return AX_GEO_TEXT("It holds more than %1 files.").arg(mostMembers);
        const QByteArray name(entry->pszName);
        if (!name.toLower().endsWith(".kml"))
            continue;
        ++documents;
        if (member.isEmpty() || name == "doc.kml") {
            member = name;
            const QString tooLarge = AxGeoTooLarge(entry->bSizeKnown ? qint64(entry->nSize) : 0);
            if (!tooLarge.isEmpty())
                return tooLarge;
        }
    }
    if (documents == 0)
        return AX_GEO_TEXT("There is no KML document in it.");
    if (documents > 1)
        notes += AX_GEO_TEXT("The file holds %1 documents; \"%2\" is read.")
                     .arg(documents)
                     .arg(QString::fromUtf8(member));
    const std::unique_ptr<VSILFILE, int (*)(VSILFILE*)> file(
        VSIFOpenL((archive + '/' + member).constData(), "rb"),
        [](VSILFILE* open) { return VSIFCloseL(open); });
    if (!file)
        return AX_GEO_TEXT("It is no KMZ file.");
    // What the archive says of its size may be wrong.
    QByteArray piece(1024 * 1024, Qt::Uninitialized);
    while (const std::size_t count = VSIFReadL(piece.data(), 1, std::size_t(piece.size()), file.get())) {
        text.append(piece.constData(), int(count));
        if (text.size() > axMostGeoText)
            return TooLarge();
    }
    return text.isEmpty() ? AX_GEO_TEXT("Its document cannot be unpacked.") : QString();
}
