#pragma once

#include <AxAlgorthm/AxAlgorthmExport.h>

#include <QString>

#include <functional>
#include <vector>

/**
 * Names that are looked for while somebody types. Upper case, accents and the width of letters make no
 * difference ("sao" finds "São Paulo"). A value; one thread at a time.
 */
class AXALGORTHM_EXPORT AxNameIndex
{
public:
    /// Names of more weight come first among equals, as large towns do. The number stands for the name in
    /// answers: it is counted up from 0.
    int Add(const QString& name, double weight);
    void Clear();
    int Count() const { return static_cast<int>(m_names.size()); }

    /// How far away a name is, by its number; any unit.
    using Distance = std::function<double(int number)>;
    /// The numbers of names that contain what was typed, at most so many: those that are it, those that begin
    /// with it, those with a word that begins with it, then the others. Among equals the nearer ones come
    /// first where a distance is given, then those of more weight. Nothing for blanks alone.
    std::vector<int> Find(const QString& typed, int most, const Distance& distance = {}) const;

private:
    struct Name
    {
        int begin = 0; ///< in the text
        double weight = 0.0;
    };
    struct Found
    {
        int fit = 0; ///< 0 is best
        double distance = 0.0;
        double weight = 0.0;
        int number = 0;

        bool operator<(const Found& other) const;
    };

    std::vector<Found> Scan(const QString& text, int lead) const;

    QString m_text; ///< all names, folded, each after a line end
    std::vector<Name> m_names;
};
