#include "gui/KVDocumentView.h"

KVDocumentView::KVDocumentView(QWidget* parent) : QGraphicsView(parent) {}

void KVDocumentView::HideSplitter(bool hide)
{
    if (hide == m_isSplitterHidden)
        return;
    m_isSplitterHidden = hide;
    emit SplitterHiddenChanged(hide);
}
