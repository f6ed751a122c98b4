#include <AxData/exchange/AxExchangeText.h>
#include <AxData/exchange/AxQgcPlan.h>

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <cmath>
#include <limits>
#include <map>

namespace {
/// Takes a mission out of a plan; the first fault ends it.
class PlanReader
{
public:
    bool Read(const QJsonObject& plan)
    {
        if (!Need(plan, "", "fileType", QJsonValue::String) ||
            !Need(plan, "", "version", QJsonValue::Double) || !Need(plan, "", "mission", QJsonValue::Object))
            return false;
        if (plan["fileType"].toString() != QLatin1String("Plan"))
            return Fail("fileType", Quoted(QT_TRANSLATE_NOOP("AxExchange", "\"%1\" is no plan"),
                                           plan["fileType"].toString()));
        if (!IsVersion(plan["version"], {1}, QStringLiteral("version")))
            return false;
        const QJsonObject flown = plan["mission"].toObject();
        return ReadMission(flown) && ResolveJumps() && NoteTheRest(plan);
    }

    AxMissionRead read;

private:
    bool Fail(const QString& field, const QString& reason)
    {
        read.fault = AxExchangeText(QT_TRANSLATE_NOOP("AxExchange", "Field %1: %2.")).arg(field, reason);
        return false;
    }

    static QString Quoted(const char* text, const QString& value)
    {
        return AxExchangeText(text).arg(value.left(40));
    }

    static QString TypeName(QJsonValue::Type type)
    {
        switch (type) {
        case QJsonValue::String:
            return AxExchangeText(QT_TRANSLATE_NOOP("AxExchange", "is no text"));
        case QJsonValue::Double:
            return AxExchangeText(QT_TRANSLATE_NOOP("AxExchange", "is no number"));
        case QJsonValue::Bool:
            return AxExchangeText(QT_TRANSLATE_NOOP("AxExchange", "is neither true nor false"));
        case QJsonValue::Array:
            return AxExchangeText(QT_TRANSLATE_NOOP("AxExchange", "is no list"));
        default:
            return AxExchangeText(QT_TRANSLATE_NOOP("AxExchange", "is no object"));
        }
    }

    bool Need(const QJsonObject& in, const QString& where, const char* key, QJsonValue::Type type)
    {
        const QJsonValue value = in[QLatin1String(key)];
        if (value.type() == type)
            return true;
        return Fail(where + QLatin1String(key),
                    value.isUndefined() ? AxExchangeText(QT_TRANSLATE_NOOP("AxExchange", "is missing"))
                                        : TypeName(type));
    }

    bool IsVersion(const QJsonValue& value, std::initializer_list<int> known, const QString& field)
    {
        for (int version : known)
            if (value.toDouble() == version)
                return true;
        return Fail(field, Quoted(QT_TRANSLATE_NOOP("AxExchange", "version %1 cannot be read"),
                                  QString::number(value.toDouble())));
    }

    /// A number, or NaN for null.
    bool Number(const QJsonValue& value, const QString& field, double& number)
    {
        if (!value.isDouble() && !value.isNull())
            return Fail(field, TypeName(QJsonValue::Double));
        number = value.toDouble(std::numeric_limits<double>::quiet_NaN());
        return true;
    }

    bool WholeNumber(const QJsonObject& in, const QString& where, const char* key, int& number)
    {
        if (!Need(in, where, key, QJsonValue::Double))
            return false;
        const double value = in[QLatin1String(key)].toDouble();
        if (!(std::fabs(value) < 1e6 && value == std::floor(value)))
            return Fail(where + QLatin1String(key),
                        AxExchangeText(QT_TRANSLATE_NOOP("AxExchange", "is no whole number")));
        number = static_cast<int>(value);
        return true;
    }

    bool ReadMission(const QJsonObject& flown)
    {
        const QString where = QStringLiteral("mission.");
        if (flown.contains("version") && !IsVersion(flown["version"], {2}, where + "version"))
            return false;
        if (!Need(flown, where, "plannedHomePosition", QJsonValue::Array) ||
            !Need(flown, where, "items", QJsonValue::Array))
            return false;
        const QString homeField = where + "plannedHomePosition";
        const QJsonArray home = flown["plannedHomePosition"].toArray();
        AxMissionHome& place = read.mission.home;
        if (home.size() != 3)
            return Fail(homeField, Quoted(QT_TRANSLATE_NOOP("AxExchange", "%1 values instead of 3"),
                                          QString::number(home.size())));
        if (!Number(home[0], homeField + "[0]", place.latitude) ||
            !Number(home[1], homeField + "[1]", place.longitude) ||
            !Number(home[2], homeField + "[2]", place.altitude))
            return false;
        place = AxHomeOfFile(place);
        if (place.IsOpen())
            read.notes << AxOpenHomeNote();
        else if (std::isnan(place.altitude))
            read.notes << AxExchangeText(
                QT_TRANSLATE_NOOP("AxExchange", "The plan does not say how high its home lies."));
        read.mission.isFixedWing = flown["vehicleType"].toInt() == 1;
        const char* speed = read.mission.isFixedWing ? "cruiseSpeed" : "hoverSpeed";
        read.mission.speed = flown[QLatin1String(speed)].toDouble();
        return ReadItems(flown["items"].toArray(), where + "items");
    }

    bool ReadItems(const QJsonArray& items, const QString& where)
    {
        for (int i = 0; i < items.size(); ++i) {
            const QString field = QStringLiteral("%1[%2]").arg(where).arg(i);
            if (!items[i].isObject())
                return Fail(field, TypeName(QJsonValue::Object));
            const QJsonObject item = items[i].toObject();
            if (!Need(item, field + '.', "type", QJsonValue::String))
                return false;
            const QString type = item["type"].toString();
            const bool isRead = type == QLatin1String("SimpleItem")    ? ReadItem(item, field + '.')
                                : type == QLatin1String("ComplexItem") ? ReadSurvey(item, field + '.')
                                                                       : FailOnType(field + ".type", type);
            if (!isRead)
                return false;
        }
        return true;
    }

    bool FailOnType(const QString& field, const QString& type)
    {
        return Fail(field, Quoted(QT_TRANSLATE_NOOP("AxExchange", "items \"%1\" cannot be read"), type));
    }

    bool ReadSurvey(const QJsonObject& item, const QString& where)
    {
        if (!Need(item, where, "complexItemType", QJsonValue::String))
            return false;
        const QString type = item["complexItemType"].toString();
        if (type == QLatin1String("fwLandingPattern") || type == QLatin1String("vtolLandingPattern"))
            return LeaveOutLanding(where);
        const bool isSurvey = type == QLatin1String("survey");
        if (!isSurvey && type != QLatin1String("CorridorScan"))
            return FailOnType(where + "complexItemType", type);
        // A survey of an earlier version says how it was to be computed, but not what is flown.
        if (isSurvey && !IsVersion(item["version"], {4, 5}, where + "version"))
            return false;
        if (!Need(item, where, "TransectStyleComplexItem", QJsonValue::Object))
            return false;
        const QJsonObject transects = item["TransectStyleComplexItem"].toObject();
        const QString inner = where + "TransectStyleComplexItem.";
        if (!Need(transects, inner, "Items", QJsonValue::Array))
            return false;
        const std::size_t begin = read.mission.items.size();
        const QJsonArray items = transects["Items"].toArray();
        for (int i = 0; i < items.size(); ++i)
            if (!ReadItem(items[i].toObject(), QStringLiteral("%1Items[%2].").arg(inner).arg(i)))
                return false;
        const bool isOnly = ++surveys == 1;
        read.mission.surveyBegin = isOnly ? begin : 0;
        read.mission.surveyEnd = isOnly ? read.mission.items.size() : 0;
        return true;
    }

    /// The file says where to land, but not the items of the approach: the program that made it computes them.
    bool LeaveOutLanding(const QString& where)
    {
        const QString note =
            AxExchangeText(
                QT_TRANSLATE_NOOP(
                    "AxExchange",
                    "The landing pattern (%1) is not taken over; the mission has no landing by it."))
                .arg(where.chopped(1));
        read.mission.leftOut << note;
        read.notes << note;
        return true;
    }

    bool ReadItem(const QJsonObject& item, const QString& where)
    {
        AxMissionItem made;
        if (!WholeNumber(item, where, "command", made.command) ||
            !WholeNumber(item, where, "frame", made.frame) ||
            !Need(item, where, "autoContinue", QJsonValue::Bool) ||
            !Need(item, where, "params", QJsonValue::Array))
            return false;
        const QJsonArray params = item["params"].toArray();
        if (params.size() != 7)
            return Fail(where + "params", Quoted(QT_TRANSLATE_NOOP("AxExchange", "%1 values instead of 7"),
                                                 QString::number(params.size())));
        double* const targets[] = {&made.params[0], &made.params[1], &made.params[2], &made.params[3],
                                   &made.latitude,  &made.longitude, &made.altitude};
        for (int i = 0; i < 7; ++i)
            if (!Number(params[i], QStringLiteral("%1params[%2]").arg(where).arg(i), *targets[i]))
                return false;
        made.isContinued = item["autoContinue"].toBool();
        const QString fault = AxItemFault(made);
        if (!fault.isEmpty())
            return Fail(where + "params", fault);
        read.mission.items.push_back(made);
        if (item["doJumpId"].isDouble())
            numberOf.emplace(item["doJumpId"].toDouble(), read.mission.items.size());
        return true;
    }

    /// A jump names its target by an id of the file, which need not be the place among the items.
    bool ResolveJumps()
    {
        for (AxMissionItem& item : read.mission.items) {
            if (item.command != AxMissionItem::Jump || std::isnan(item.params[0]))
                continue;
            const auto target = numberOf.find(item.params[0]);
            if (target == numberOf.end())
                return Fail(QStringLiteral("doJumpId"),
                            Quoted(QT_TRANSLATE_NOOP("AxExchange", "no item has the number %1 to jump to"),
                                   QString::number(item.params[0])));
            item.params[0] = static_cast<double>(target->second);
        }
        return true;
    }

    bool NoteTheRest(const QJsonObject& plan)
    {
        const QJsonObject fence = plan["geoFence"].toObject();
        const int fences = fence["polygons"].toArray().size() + fence["circles"].toArray().size();
        const int rallies = plan["rallyPoints"].toObject()["points"].toArray().size();
        if (fences > 0)
            read.notes << AxExchangeText(
                              QT_TRANSLATE_NOOP("AxExchange", "%1 fences of the plan are not taken over."))
                              .arg(fences);
        if (rallies > 0)
            read.notes << AxExchangeText(QT_TRANSLATE_NOOP("AxExchange",
                                                           "%1 rally points of the plan are not taken over."))
                              .arg(rallies);
        if (surveys > 0)
            read.notes << AxExchangeText(QT_TRANSLATE_NOOP(
                "AxExchange",
                "Of a survey the items to fly are taken over, not the values it was computed from."));
        return true;
    }

    std::map<double, std::size_t> numberOf;
    int surveys = 0;
};
} // namespace

AxMissionRead AxReadQgcPlan(const QByteArray& data)
{
    QJsonParseError error = {};
    const QJsonDocument document = QJsonDocument::fromJson(data, &error);
    if (error.error != QJsonParseError::NoError)
        return AxRefusedMission(
            AxExchangeText(QT_TRANSLATE_NOOP("AxExchange", "Line %1: the file is no JSON or is cut "
                                                           "off (%2)."))
                .arg(data.left(error.offset).count('\n') + 1)
                .arg(error.errorString()));
    if (!document.isObject())
        return AxRefusedMission(AxExchangeText(QT_TRANSLATE_NOOP("AxExchange", "The file is no plan.")));
    PlanReader reader;
    if (!reader.Read(document.object()))
        return AxRefusedMission(reader.read.fault);
    const QString fault = AxMissionFault(reader.read.mission);
    return fault.isEmpty() ? reader.read : AxRefusedMission(fault);
}
