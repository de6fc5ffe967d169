#include "editor/Document.h"

#include "operations/MaskOfShape.h"

#include <QFileInfo>
#include <QUndoCommand>

#include <algorithm>

namespace {

int UndoStepsFor(const RGBA32iImage& picture)
{
    const qint64 bytes = std::max<qint64>(picture.BytesPerLine() * picture.Height(), 1);
    return int(std::clamp<qint64>(Document::UndoBudgetBytes / bytes, 1, Document::MaxUndoSteps));
}

QPainterPath RectanglePath(const QSize& size)
{
    QPainterPath path;
    path.addRect(QRectF(QPointF(0, 0), size));
    return path;
}

} // namespace

/// One undo step. Neighbouring steps share the picture between them.
class Document::ChangePicture : public QUndoCommand
{
public:
    ChangePicture(Document& document, const RGBA32iImage& after, const QString& text)
        : QUndoCommand(text), m_document(document), m_before(document.m_picture), m_after(after)
    {}

    void undo() override { m_document.SetPicture(m_before); }
    void redo() override { m_document.SetPicture(m_after); }

private:
    Document& m_document;
    const RGBA32iImage m_before;
    const RGBA32iImage m_after;
};

Document::Document(const OpenedPicture& opened, QObject* parent)
    : QObject(parent), m_path(opened.path), m_format(opened.format), m_metadata(opened.metadata),
      m_depthReduced(opened.depthReduced), m_hasMorePictures(opened.hasMorePictures),
      m_picture(opened.picture), m_savedPicture(opened.picture)
{
    m_undoStack.setUndoLimit(UndoStepsFor(m_picture));
    connect(&m_maskJob, &LatestJobBase::ResultReadyAt, this,
            [this](int index) { OnMaskReady(m_maskJob.ResultAt(index)); });
}

Document::~Document() = default;

QString Document::Name() const { return QFileInfo(m_path).fileName(); }

void Document::Commit(const RGBA32iImage& picture, const QString& text)
{
    Q_ASSERT(picture.Width() == m_picture.Width() && picture.Height() == m_picture.Height());
    m_undoStack.push(new ChangePicture(*this, picture, text));
}

void Document::MarkSaved(const RGBA32iImage& picture, const QString& path, const QByteArray& format)
{
    const bool wasModified = IsModified();
    m_savedPicture = picture;
    m_path = path;
    m_format = format;
    m_depthReduced = false; // the file holds just this now
    m_hasMorePictures = false;
    emit PathChanged();
    if (wasModified != IsModified())
        emit ModifiedChanged(IsModified());
}

void Document::SetLocked(bool locked)
{
    if (locked == m_locked)
        return;
    m_locked = locked;
    emit LockedChanged(locked);
}

void Document::Select(const QPainterPath& shape)
{
    const QPainterPath picture = RectanglePath(Size());
    QPainterPath onPicture;
    if (shape.intersects(QRectF(QPointF(0, 0), Size())))
        onPicture =
            QRectF(QPointF(0, 0), Size()).contains(shape.boundingRect()) ? shape : shape.intersected(picture);
    if (onPicture.isEmpty() && m_selection.isEmpty())
        return;
    m_selection = onPicture;
    ForgetMask();
    emit SelectionChanged();
}

void Document::SelectAll() { Select(RectanglePath(Size())); }

void Document::InvertSelection()
{
    const QPainterPath picture = RectanglePath(Size());
    Select(HasSelection() ? picture.subtracted(m_selection) : picture);
}

void Document::SetFeather(int pixels)
{
    const int feather = std::clamp(pixels, 0, operations::MaxFeather);
    if (feather == m_feather)
        return;
    m_feather = feather;
    ForgetMask();
}

void Document::WithMask(QObject* context, std::function<void(const operations::Selection&)> use)
{
    if (m_isMaskValid) {
        use(m_mask);
        return;
    }
    m_maskUsers.emplace_back(context, std::move(use));
    if (m_maskUsers.size() == 1)
        m_maskJob.Request();
}

void Document::SetPicture(const RGBA32iImage& picture)
{
    const bool wasModified = IsModified();
    m_picture = picture;
    emit PictureChanged();
    if (wasModified != IsModified())
        emit ModifiedChanged(IsModified());
}

void Document::ForgetMask()
{
    m_mask = operations::Selection();
    // A selection of everything limits nothing, and its border does not fade.
    m_isMaskValid = m_selection.isEmpty() || m_selection == RectanglePath(Size());
    m_maskJob.Abort();
    if (!m_maskUsers.empty())
        m_maskJob.Request();
}

LatestJob<operations::Selection>::Work Document::MakeMask() const
{
    return [isNeeded = !m_isMaskValid, shape = m_selection, feather = m_feather,
            size = Size()](const std::atomic<bool>&) {
        return isNeeded ? operations::MaskOfShape(shape, feather, size) : operations::Selection();
    };
}

void Document::OnMaskReady(const operations::Selection& mask)
{
    m_mask = mask;
    m_isMaskValid = !mask.isMissing; // the next who asks may find more memory
    const auto users = std::exchange(m_maskUsers, {});
    for (const auto& [context, use] : users)
        if (context)
            use(m_mask);
}
