#pragma once

#include <QGraphicsView>

/// Shows one picture, and beside it the same picture as an adjustment would leave it.
class KVDocumentView : public QGraphicsView
{
    Q_OBJECT

public:
    explicit KVDocumentView(QWidget* parent = nullptr);

    bool IsSplitterHidden() const { return m_isSplitterHidden; }

public slots:
    /// Hides the line between before and after, so that the adjusted picture alone is seen.
    void HideSplitter(bool hide);

signals:
    void SplitterHiddenChanged(bool hidden);

private:
    bool m_isSplitterHidden = false;
};
