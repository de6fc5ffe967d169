#include "editor/SaveDialog.h"

#include "core/KVImageFileManager.h"

#include <QDialog>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QLabel>
#include <QMessageBox>
#include <QSlider>
#include <QSpinBox>
#include <QVBoxLayout>

namespace {

constexpr int MinQuality = 1;
constexpr int MaxQuality = 100;
constexpr int SliderWidth = 240;

} // namespace

SaveDialog::Answer SaveDialog::Ask(QWidget* parent, const QString& path, int quality)
{
    QFileDialog dialog(parent, tr("Save Picture As"), QFileInfo(path).absolutePath(),
                       KVImageFileManager::GetFilterForWrite());
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setOption(QFileDialog::HideNameFilterDetails);
    dialog.selectFile(QFileInfo(path).fileName());
    dialog.setDefaultSuffix(QFileInfo(path).suffix());
    Answer answer;
    while (dialog.exec() == QDialog::Accepted && !dialog.selectedFiles().isEmpty()) {
        const QString chosen = dialog.selectedFiles().constFirst();
        answer.format = KVImageFileManager::FormatOfName(chosen);
        if (answer.format.isEmpty()) {
            QMessageBox::warning(
                parent, tr("Save Picture As"),
                tr("“%1” has no extension of a known picture format.").arg(QFileInfo(chosen).fileName()));
            continue;
        }
        answer.quality = quality;
        if (!HasQuality(answer.format) || AskQuality(parent, answer.quality))
            answer.path = chosen;
        break;
    }
    return answer;
}

bool SaveDialog::HasQuality(const QByteArray& format) { return format == "jpeg" || format == "webp"; }

bool SaveDialog::AskQuality(QWidget* parent, int& quality)
{
    QDialog dialog(parent, Qt::WindowTitleHint | Qt::WindowCloseButtonHint);
    dialog.setWindowTitle(tr("Quality"));
    auto* const label = new QLabel(tr("&Quality (higher is larger and closer to the picture):"), &dialog);
    auto* const slider = new QSlider(Qt::Horizontal, &dialog);
    auto* const spin = new QSpinBox(&dialog);
    slider->setRange(MinQuality, MaxQuality);
    slider->setMinimumWidth(SliderWidth);
    slider->setAccessibleName(tr("Quality"));
    spin->setRange(MinQuality, MaxQuality);
    label->setBuddy(spin);
    QObject::connect(slider, &QSlider::valueChanged, spin, &QSpinBox::setValue);
    QObject::connect(spin, QOverload<int>::of(&QSpinBox::valueChanged), slider, &QSlider::setValue);
    spin->setValue(quality < MinQuality ? DefaultQuality : quality);
    auto* const buttons = new QDialogButtonBox(QDialogButtonBox::Save | QDialogButtonBox::Cancel, &dialog);
    QObject::connect(buttons, &QDialogButtonBox::accepted, &dialog, &QDialog::accept);
    QObject::connect(buttons, &QDialogButtonBox::rejected, &dialog, &QDialog::reject);
    auto* const row = new QHBoxLayout;
    row->addWidget(slider, 1);
    row->addWidget(spin);
    auto* const layout = new QVBoxLayout(&dialog);
    layout->setSizeConstraint(QLayout::SetFixedSize);
    layout->addWidget(label);
    layout->addLayout(row);
    layout->addWidget(buttons);
    if (dialog.exec() != QDialog::Accepted)
        return false;
    quality = spin->value();
    return true;
}
