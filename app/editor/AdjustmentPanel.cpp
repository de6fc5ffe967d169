#include "editor/AdjustmentPanel.h"

#include "YDTaskWidget.h"
#include "editor/BackgroundTask.h"
#include "editor/Document.h"
#include "editor/Messages.h"
#include "editor/PresetMenu.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QPushButton>
#include <QScrollArea>
#include <QStackedWidget>
#include <QVBoxLayout>

namespace {

constexpr int Margin = 12;
constexpr int MinWidthInCharacters = 50;

const AdjustmentEntry& EntryAt(int index) { return AdjustmentCatalog::Entries().at(std::size_t(index)); }

} // namespace

AdjustmentPanel::AdjustmentPanel(QWidget* parent)
    : QWidget(parent), m_choice(new QComboBox(this)), m_pages(new QStackedWidget(this)),
      m_presets(new PresetMenu(this)), m_apply(new QPushButton(tr("Appl&y"), this)),
      m_reset(new QPushButton(tr("&Reset"), this)), m_widgets(AdjustmentCatalog::Entries().size()),
      m_scrollAreas(AdjustmentCatalog::Entries().size())
{
    BuildLayout();
    FillChoice();
    connect(m_choice, QOverload<int>::of(&QComboBox::currentIndexChanged), this, &AdjustmentPanel::OnChosen);
    connect(m_apply, &QPushButton::clicked, this, &AdjustmentPanel::Apply);
    connect(m_reset, &QPushButton::clicked, this, [this] { Widget()->OnReset(); });
    OnChosen(m_choice->currentIndex());
}

AdjustmentPanel::~AdjustmentPanel()
{
    if (m_adjusted)
        m_adjusted->SetLocked(false); // nobody will hear of the task's end
}

void AdjustmentPanel::BuildLayout()
{
    m_choice->setObjectName(QStringLiteral("AdjustmentChoice"));
    m_choice->setAccessibleName(tr("Adjustment"));
    m_choice->setToolTip(tr("The adjustment that the panel shows"));
    m_choice->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    m_apply->setObjectName(QStringLiteral("ApplyButton"));
    m_apply->setToolTip(tr("Apply these settings to the picture"));
    m_reset->setObjectName(QStringLiteral("ResetButton"));
    m_reset->setToolTip(tr("Put the settings back to their defaults"));

    auto* const top = new QHBoxLayout;
    top->setContentsMargins(Margin, Margin, Margin, 0);
    top->addWidget(m_choice, 1);
    top->addWidget(m_presets);
    auto* const buttons = new QHBoxLayout;
    buttons->setContentsMargins(Margin, 0, Margin, Margin);
    buttons->addWidget(m_reset);
    buttons->addStretch();
    buttons->addWidget(m_apply);
    auto* const layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addLayout(top);
    layout->addWidget(m_pages, 1);
    layout->addLayout(buttons);
    setMinimumWidth(fontMetrics().averageCharWidth() * MinWidthInCharacters);
}

/// Each item's data is the index of its entry; the lines between the groups have none.
void AdjustmentPanel::FillChoice()
{
    const int count = int(AdjustmentCatalog::Entries().size());
    for (int index = 0; index < count; ++index) {
        if (index > 0 && EntryAt(index).group != EntryAt(index - 1).group)
            m_choice->insertSeparator(m_choice->count());
        m_choice->addItem(EntryAt(index).Title(), index);
    }
    m_choice->setMaxVisibleItems(m_choice->count());
}

void AdjustmentPanel::SetDocument(Document* document)
{
    // One by one: the end of a document that is still being adjusted has to reach EndApplying().
    for (const QMetaObject::Connection& connection : m_connections)
        disconnect(connection);
    m_connections.clear();
    m_document = document;
    if (document) {
        m_connections = {
            connect(document, &Document::PictureChanged, this, &AdjustmentPanel::ShowPicture),
            connect(document, &Document::LockedChanged, this, &AdjustmentPanel::UpdateButtons),
            connect(document, &QObject::destroyed, this, [this] { SetDocument(nullptr); }),
        };
    }
    ShowPicture();
    UpdateButtons();
}

void AdjustmentPanel::Choose(const AdjustmentEntry& entry)
{
    m_choice->setCurrentIndex(m_choice->findData(int(&entry - AdjustmentCatalog::Entries().data())));
}

const AdjustmentEntry& AdjustmentPanel::Chosen() const { return EntryAt(m_current); }

YDTaskWidget* AdjustmentPanel::Widget() const { return m_widgets.at(std::size_t(m_current)); }

void AdjustmentPanel::Apply()
{
    if (!m_document || m_document->IsLocked() || m_isApplying)
        return;
    m_isApplying = true;
    m_focus = focusWidget();
    setEnabled(false);
    const QPointer<Document> document = m_document;
    document->SetLocked(true);
    m_adjusted = document;
    connect(document, &QObject::destroyed, this, &AdjustmentPanel::EndApplying);
    document->WithMask(
        this, [this, document](const operations::Selection& selection) { StartTask(document, selection); });
}

void AdjustmentPanel::showEvent(QShowEvent* event)
{
    QWidget::showEvent(event);
    ShowPicture();
}

void AdjustmentPanel::hideEvent(QHideEvent* event)
{
    QWidget::hideEvent(event);
    ShowPicture();
}

QWidget* AdjustmentPanel::MakePage(const AdjustmentEntry& entry)
{
    auto* const scroll = new QScrollArea(m_pages);
    scroll->setFrameShape(QFrame::NoFrame);
    scroll->setWidgetResizable(true);
    auto* const content = new QWidget(scroll);
    YDTaskWidget* const widget = entry.makeWidget(false, content).release();
    auto* const layout = new QVBoxLayout(content);
    layout->setContentsMargins(Margin, Margin, Margin, Margin);
    layout->addWidget(widget);
    layout->addStretch();
    scroll->setWidget(content);
    m_widgets.at(std::size_t(m_current)) = widget;
    return scroll;
}

void AdjustmentPanel::OnChosen(int item)
{
    const QVariant index = m_choice->itemData(item);
    if (!index.isValid())
        return;
    if (m_current >= 0)
        Widget()->SetImage({}, {}, {}, {});
    m_current = index.toInt();
    QWidget*& page = m_scrollAreas.at(std::size_t(m_current));
    if (!page) {
        page = MakePage(Chosen());
        m_pages->addWidget(page);
    }
    m_pages->setCurrentWidget(page);
    m_presets->SetTarget(Chosen(), Widget());
    ShowPicture();
    UpdateButtons();
}

/// The panel looks at the picture too: some adjustments show its histogram. A panel that nobody sees holds
/// none.
void AdjustmentPanel::ShowPicture()
{
    if (m_isApplying)
        return;
    const bool isSeen = m_document && isVisible();
    Widget()->SetImage(isSeen ? m_document->Picture() : RGBA32iImage(), {}, {}, {});
}

void AdjustmentPanel::UpdateButtons()
{
    m_apply->setEnabled(m_document && !m_document->IsLocked() && !m_isApplying);
}

void AdjustmentPanel::StartTask(const QPointer<Document>& document, const operations::Selection& selection)
{
    BackgroundTask::Run(
        this,
        [picture = document->Picture(), selection, task = Widget()->MakeTask()] {
            return task.ApplyToCopy(picture, selection);
        },
        [this, document, title = Chosen().Title()](const operations::Outcome& outcome) {
            if (document)
                Deliver(document, outcome.picture, title, outcome.problem);
        });
}

void AdjustmentPanel::Deliver(const QPointer<Document>& document, const RGBA32iImage& adjusted,
                              const QString& title, const QString& problem)
{
    EndApplying();
    disconnect(document, &QObject::destroyed, this, &AdjustmentPanel::EndApplying);
    document->SetLocked(false);
    if (!problem.isEmpty()) {
        Messages::ShowError(this, tr("The adjustment could not be computed."), problem);
        return;
    }
    document->Commit(adjusted, title);
    emit Applied();
}

void AdjustmentPanel::EndApplying()
{
    m_isApplying = false;
    m_adjusted = nullptr;
    setEnabled(true);
    if (m_focus)
        m_focus->setFocus();
    ShowPicture();
    UpdateButtons();
}
