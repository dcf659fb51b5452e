#include "player/Frame_Index.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>

namespace {

// A time within this of a frame's is that frame: positions are kept to the millisecond.
constexpr double Same_Frame = 0.001;

void sortUnique(QList<double>& times)
{
    std::sort(times.begin(), times.end());
    times.erase(std::unique(times.begin(), times.end()), times.end());
}

} // namespace

std::optional<Frame_Index> Frame_Index::fromJson(const QByteArray& json)
{
    const QJsonObject root = QJsonDocument::fromJson(json).object();
    bool known = false;
    const double start = root.value(QLatin1String("format"))
                             .toObject()
                             .value(QLatin1String("start_time"))
                             .toString()
                             .toDouble(&known);
    const double origin = known ? start : 0.0;
    Frame_Index index;
    for (const QJsonValue packet : root.value(QLatin1String("packets")).toArray()) {
        const QJsonObject fields = packet.toObject();
        bool ok = false;
        const double pts = fields.value(QLatin1String("pts_time")).toString().toDouble(&ok);
        if (!ok)
            continue;
        const double time = std::max(0.0, pts - origin);
        index.frames << time;
        if (fields.value(QLatin1String("flags")).toString().startsWith(QLatin1Char('K')))
            index.keyframes << time;
    }
    if (index.frames.isEmpty())
        return std::nullopt;
    sortUnique(index.frames);
    sortUnique(index.keyframes);
    return index;
}

// The time of the frame shown at `seconds`: the last frame that starts by then.
double Frame_Index::shown(double seconds) const
{
    const auto at = std::upper_bound(frames.begin(), frames.end(), seconds + Same_Frame);
    return at == frames.begin() ? seconds : *(at - 1);
}

std::optional<double> Frame_Index::after(const QList<double>& times, double seconds) const
{
    const auto at = std::upper_bound(times.begin(), times.end(), shown(seconds) + Same_Frame);
    if (at == times.end())
        return std::nullopt;
    return *at;
}

std::optional<double> Frame_Index::before(const QList<double>& times, double seconds) const
{
    const auto at = std::lower_bound(times.begin(), times.end(), shown(seconds) - Same_Frame);
    if (at == times.begin())
        return std::nullopt;
    return *(at - 1);
}

QStringList Frame_Index_Arguments(const QString& file)
{
    return {QStringLiteral("-v"),
            QStringLiteral("error"),
            QStringLiteral("-select_streams"),
            QStringLiteral("v:0"),
            QStringLiteral("-show_entries"),
            QStringLiteral("packet=pts_time,flags:format=start_time"),
            QStringLiteral("-of"),
            QStringLiteral("json"),
            file};
}
