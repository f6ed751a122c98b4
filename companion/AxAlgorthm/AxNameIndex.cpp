#include <AxAlgorthm/AxNameIndex.h>

#include <algorithm>

namespace {
constexpr QChar lineEnd(u'\n');

QString Folded(const QString& name)
{
    QString folded;
    const QString parts = name.normalized(QString::NormalizationForm_KD).toCaseFolded();
    for (const QChar letter : parts)
        if (!letter.isMark())
            folded += letter.isSpace() ? QChar(u' ') : letter;
    return folded.simplified();
}

// How well what was typed fits where it was found: 0 is best.
int FitAt(const QString& text, int place, int length)
{
    const QChar before = text[place - 1];
    const int end = place + length;
    if (before == lineEnd)
        return end == text.size() || text[end] == lineEnd ? 0 : 1;
    return before.isLetterOrNumber() ? 3 : 2;
}
} // namespace

int AxNameIndex::Add(const QString& name, double weight)
{
    const QString folded = Folded(name);
    m_text += lineEnd;
    m_names.push_back({m_text.size(), weight});
    m_text += folded;
    return Count() - 1;
}

void AxNameIndex::Clear()
{
    m_text.clear();
    m_names.clear();
}

std::vector<int> AxNameIndex::Find(const QString& typed, int most, const Distance& distance) const
{
    const QString wanted = Folded(typed);
    if (wanted.isEmpty() || most <= 0)
        return {};
    // A letter or two stand in most names many times; those that begin with them are enough then.
    std::vector<Found> found = Scan(lineEnd + wanted, 1);
    if (static_cast<int>(found.size()) < most)
        found = Scan(wanted, 0);
    for (Found& one : found)
        one.distance = distance ? distance(one.number) : 0.0;
    const std::size_t count = std::min(found.size(), static_cast<std::size_t>(most));
    std::partial_sort(found.begin(), found.begin() + static_cast<std::ptrdiff_t>(count), found.end());
    std::vector<int> numbers;
    for (std::size_t i = 0; i < count; ++i)
        numbers.push_back(found[i].number);
    return numbers;
}

std::vector<AxNameIndex::Found> AxNameIndex::Scan(const QString& text, int lead) const
{
    std::vector<Found> found;
    std::size_t number = 0;
    for (int at = m_text.indexOf(text); at >= 0; at = m_text.indexOf(text, at + 1)) {
        const int place = at + lead;
        // Places grow, and so do the names that they are in.
        while (number + 1 < m_names.size() && m_names[number + 1].begin <= place)
            ++number;
        const int fit = FitAt(m_text, place, text.size() - lead);
        if (!found.empty() && found.back().number == static_cast<int>(number))
            found.back().fit = std::min(found.back().fit, fit);
        else
            found.push_back({fit, 0.0, m_names[number].weight, static_cast<int>(number)});
    }
    return found;
}

bool AxNameIndex::Found::operator<(const Found& other) const
{
    if (fit != other.fit)
        return fit < other.fit;
    if (distance != other.distance)
        return distance < other.distance;
    return weight != other.weight ? weight > other.weight : number < other.number;
}
