#pragma once

#include "catalog/AdjustmentCatalog.h"
#include "image/KVImage.h"

#include <QPointer>
#include <QWidget>

#include <vector>

class Document;
class PresetMenu;
class QComboBox;
class QPushButton;
class QStackedWidget;
namespace operations {
struct Selection;
}
class YDTaskWidget;

/// Any adjustment of the catalogue as an embedded panel, applied to the current document at a press of a
/// button.
///
/// The task runs over a copy of the picture on the thread pool, so the window stays alive meanwhile.
class AdjustmentPanel : public QWidget
{
    Q_OBJECT

public:
    explicit AdjustmentPanel(QWidget* parent = nullptr);
    ~AdjustmentPanel() override;

    /// Null for no document.
    void SetDocument(Document* document);
    void Choose(const AdjustmentEntry& entry);
    const AdjustmentEntry& Chosen() const;
    /// The chosen adjustment's widget.
    YDTaskWidget* Widget() const;

public slots:
    void Apply();

signals:
    void Applied();

protected:
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    void BuildLayout();
    void FillChoice();
    QWidget* MakePage(const AdjustmentEntry& entry);
    void OnChosen(int item);
    void ShowPicture();
    void UpdateButtons();
    void StartTask(const QPointer<Document>& document, const operations::Selection& selection);
    void Deliver(const QPointer<Document>& document, const RGBA32iImage& adjusted, const QString& title,
                 const QString& problem);
    void EndApplying();

    QPointer<Document> m_document;
    std::vector<QMetaObject::Connection> m_connections; ///< those of SetDocument()
    QComboBox* m_choice;
    QStackedWidget* m_pages;
    PresetMenu* m_presets;
    QPushButton* m_apply;
    QPushButton* m_reset;
    std::vector<YDTaskWidget*> m_widgets; ///< of each entry of the catalogue; null until it is chosen
    std::vector<QWidget*> m_scrollAreas;
    int m_current = -1;
    bool m_isApplying = false;
    QPointer<Document> m_adjusted; ///< locked while the panel adjusts it
    QPointer<QWidget> m_focus;
};
