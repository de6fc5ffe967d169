#include "SpeedTables.h"

#include <QStringList>

namespace {

struct Title
{
    const char* text;
    const char* row; ///< without its size
};

constexpr Title Rules[] = {
    {"brightness and contrast", "brightness-contrast"},
    {"exposure", "exposure"},
    {"gamma", "gamma"},
    {"posterize", "posterize"},
    {"levels", "levels"},
    {"curves", "curves"},
    {"threshold", "threshold"},
    {"hue and saturation", "hue-saturation"},
    {"colour balance", "color-balance"},
    {"black and white", "black-and-white"},
    {"black and white, CIE (in linear light)", "black-and-white-of-light"},
    {"colorize", "colorize"},
    {"photo filter", "photo-filter"},
    {"tint", "tint"},
    {"tint, channel by channel", "tint-by-channel"},
    {"temperature", "temperature"},
    {"white balance, analysis included", "white-balance"},
    {"colour enhancer, counted before", "color-enhancer"},
    {"fill with a colour at 50 %", "fill-color"},
    {"fill at 100 %", "fill-color-opaque"},
    {"selective colours", "selective-colors"},
    {"stamp over the whole picture, normal", "sign"},
    {"the same, soft light", "sign-soft-light"},
    {"nine texts", "watermark"},
};

constexpr Title Surroundings[] = {
    {"reference pass", "reference-pass"},
    {"deep copy", "deep-copy"},
    {"selection blend, one thread", "selection-blend"},
    {"histogram of red, green, blue and luma", "histogram"},
    {"deep copy and brightness and contrast", "brightness-contrast/copy+vector"},
    {"`ConvertImage`, brightness and contrast", "brightness-contrast/convert"},
    {"the same through a selection", "brightness-contrast/convert-selected"},
    {"preview of it, control change to `ImageReady`, less the 50 ms", "brightness-contrast/preview"},
    {"control change to the end of the aborted job", "brightness-contrast/abort"},
    {"`ConvertImage`, white balance, advanced", "white-balance/enhanced"},
    {"`ConvertImage`, white balance, advanced, with temperature", "white-balance/enhanced+temperature"},
    {"`ConvertImage`, colour enhancer, first on a picture", "color-enhancer/first-run"},
    {"flood fill of a picture of one colour, opaque", "flood-fill/one-colour"},
    {"the same at 50 %", "flood-fill/one-colour-half-opaque"},
    {"flood fill of a ragged half of it, opaque", "flood-fill/ragged-half"},
    {"the same at 50 %", "flood-fill/ragged-half-half-opaque"},
    {"flood fill along a comb", "flood-fill/comb"},
    {"flood fill along a spiral of one pixel's width", "flood-fill/spiral"},
    {"a curve of 16 points dragged by one mouse move, repaint included", "curves/move-of-16-points"},
};

const QString Prefix = QStringLiteral("24MP/");

QString Line(const QStringList& cells)
{
    return QStringLiteral("| %1 |\n").arg(cells.join(QStringLiteral(" | ")));
}

QString Head(const QStringList& cells)
{
    return Line(cells) + QStringLiteral("|---").repeated(cells.size()) + QStringLiteral("|\n");
}

QString Number(const BenchReport::Counters& counters, const char* name, int decimals)
{
    const auto found = counters.find(QLatin1String(name));
    return found == counters.end() ? QString() : QString::number(*found, 'f', decimals);
}

QString TimeAndRatio(const BenchReport::Counters& counters)
{
    return counters.isEmpty()
               ? QString()
               : Number(counters, "ms", 1) + QStringLiteral(" / ") + Number(counters, "ratio", 1);
}

/// The vector sets that rules were confined to, "AVX2" and so on, the best first.
QStringList VectorSets(const BenchReport& report)
{
    return report.machine[QStringLiteral("vectors")].toString().split(QStringLiteral(", "));
}

QString RulesTable(const BenchReport& report)
{
    const QStringList sets = VectorSets(report);
    QString table = Head(QStringList{QStringLiteral("24 megapixels, ms / ratio")} + sets +
                         QStringList{QStringLiteral("without kernels")});
    for (const Title& title : Rules) {
        const QString row = Prefix + QLatin1String(title.row) + QLatin1Char('/');
        QStringList cells;
        for (const QString& set : sets)
            cells.append(TimeAndRatio(report.rows.value(row + QStringLiteral("vector-") + set.toLower())));
        cells.append(TimeAndRatio(report.rows.value(row + QStringLiteral("generic"))));
        if (!cells.join(QString()).isEmpty())
            table += Line(QStringList{QLatin1String(title.text)} + cells);
    }
    return table;
}

QString SurroundingsTable(const BenchReport& report)
{
    QString table = Head({QStringLiteral("24 megapixels"), QStringLiteral("ms"), QStringLiteral("ratio")});
    for (const Title& title : Surroundings) {
        const BenchReport::Counters counters = report.rows.value(Prefix + QLatin1String(title.row));
        const bool isShort = counters.value(QStringLiteral("ms")) < 1.0;
        if (!counters.isEmpty())
            table += Line({QLatin1String(title.text), Number(counters, "ms", isShort ? 2 : 1),
                           isShort ? QString() : Number(counters, "ratio", 1)});
    }
    return table;
}

} // namespace

QString SpeedTables(const BenchReport& report)
{
    return RulesTable(report) + QLatin1Char('\n') + SurroundingsTable(report);
}
