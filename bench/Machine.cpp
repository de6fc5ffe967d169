#include "Machine.h"

#include "VectorTargets.h"

#include <QCoreApplication>
#include <QCryptographicHash>
#include <QDirIterator>
#include <QFile>
#include <QRegularExpression>
#include <QStringList>
#include <QThread>

namespace {

QString ContentOf(const QString& fileName)
{
    QFile file(fileName);
    return file.open(QIODevice::ReadOnly) ? QString::fromLocal8Bit(file.readAll()).trimmed() : QString();
}

QString ProcessorName()
{
    const QRegularExpression line(QStringLiteral("^(?:model name|Model)\\s*:\\s*(.+)$"),
                                  QRegularExpression::MultilineOption);
    const QString name = line.match(ContentOf(QStringLiteral("/proc/cpuinfo"))).captured(1);
    return name.isEmpty() ? QSysInfo::currentCpuArchitecture() : name;
}

QString VectorSets()
{
    QStringList names;
    for (const VectorTargets::Target& target : VectorTargets::All())
        names.append(target.name);
    return names.isEmpty() ? QStringLiteral("none (no module)") : names.join(QStringLiteral(", "));
}

/// Microcode that keeps gathers from leaking data makes them several times slower; the kernel tells.
QString Gathers()
{
    const QString status =
        ContentOf(QStringLiteral("/sys/devices/system/cpu/vulnerabilities/gather_data_sampling"));
    if (status.isEmpty())
        return QStringLiteral("not told");
    if (status.startsWith(QLatin1String("Mitigation")))
        return QStringLiteral("slow (%1)").arg(status);
    return QStringLiteral("as built (%1)").arg(status);
}

/// Of all files that were built with the program, itself included.
QString Checksum()
{
    const QString folder = QCoreApplication::applicationDirPath();
    QStringList names{QCoreApplication::applicationFilePath()};
    QDirIterator libraries(folder + QStringLiteral("/../lib"), {QStringLiteral("libadjustmentgui*")},
                           QDir::Files | QDir::NoSymLinks, QDirIterator::Subdirectories);
    while (libraries.hasNext())
        names.append(libraries.next());
    names.sort();
    QCryptographicHash hash(QCryptographicHash::Sha1);
    for (const QString& name : qAsConst(names)) {
        QFile file(name);
        if (file.open(QIODevice::ReadOnly))
            hash.addData(&file);
    }
    return QString::fromLatin1(hash.result().toHex());
}

} // namespace

QJsonObject Machine::Facts()
{
    return {{QStringLiteral("processor"), ProcessorName()},
            {QStringLiteral("cores"), QThread::idealThreadCount()},
            {QStringLiteral("vectors"), VectorSets()},
            {QStringLiteral("gathers"), Gathers()},
            {QStringLiteral("compiler"), QStringLiteral(COMPILER_NAME)},
            {QStringLiteral("qt"), QString::fromLatin1(qVersion())},
            {QStringLiteral("build"), Checksum()}};
}

QString Machine::Describe(const QJsonObject& facts)
{
    const auto text = [&facts](const char* key) { return facts[QLatin1String(key)].toString(); };
    return QStringLiteral("%1, %2 cores; vector kernels for %3; gathers %4; %5, Qt %6")
        .arg(text("processor"))
        .arg(facts[QLatin1String("cores")].toInt())
        .arg(text("vectors"), text("gathers"), text("compiler"), text("qt"));
}
