#include "batch/OutputPlan.h"

#include "core/KVImageFileManager.h"
#include "core/WholeFile.h"

#include <QDir>
#include <QFileInfo>
#include <QHash>

OutputPlan::Problem OutputPlan::Make(const QStringList& inputs, const QString& output)
{
    const bool isFolder = inputs.size() > 1 || output.endsWith(QLatin1Char('/')) || QFileInfo(output).isDir();
    return isFolder ? PlanFolder(inputs, output) : PlanFile(inputs.first(), output);
}

OutputPlan::Problem OutputPlan::PlanFile(const QString& input, const QString& output)
{
    if (KVImageFileManager::FormatOfName(output).isEmpty())
        return {ExitStatus::WrongCall,
                WholeFile::Error(output, tr("the name ends in no kind of picture that can be written"))};
    m_items = {{input, output, false}};
    return {};
}

OutputPlan::Problem OutputPlan::PlanFolder(const QStringList& inputs, const QString& folder)
{
    m_folder = folder;
    if (QFileInfo::exists(folder) && !QFileInfo(folder).isDir())
        return {ExitStatus::WrongCall,
                WholeFile::Error(folder, tr("several pictures need a folder, and this is none"))};
    QHash<QString, QString> inputOfName;
    for (const QString& input : inputs) {
        const QString name = QFileInfo(input).fileName();
        if (name.isEmpty())
            return {ExitStatus::WrongCall, WholeFile::Error(input, tr("it is no name of a file"))};
        if (inputOfName.contains(name))
            return {ExitStatus::WrongCall,
                    tr("%1 and %2 would both become %3")
                        .arg(inputOfName.value(name), input, QDir(folder).filePath(name))};
        inputOfName.insert(name, input);
        m_items.append(
            {input, QDir(folder).filePath(name), KVImageFileManager::FormatOfName(name).isEmpty()});
    }
    return {};
}

OutputPlan::Problem OutputPlan::MakeFolder() const
{
    if (m_folder.isEmpty() || QFileInfo(m_folder).isDir())
        return {};
    const QString name = QDir::cleanPath(m_folder);
    if (QDir().mkdir(name) || QFileInfo(name).isDir())
        return {};
    return {ExitStatus::FileFailed, WholeFile::Error(m_folder, tr("the folder could not be made"))};
}
