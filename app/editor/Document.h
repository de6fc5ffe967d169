#pragma once

#include "editor/OpenedPicture.h"
#include "operations/Selection.h"
#include "threads/LatestJob.h"

#include <QObject>
#include <QPainterPath>
#include <QPointer>
#include <QSize>
#include <QUndoStack>

#include <functional>
#include <utility>
#include <vector>

/// One opened picture: its pixels, where they came from, what can be undone, and what is selected.
///
/// A picture is a shared value that nobody writes to: every change replaces it by a new one, so that jobs
/// and savers read theirs undisturbed. Undo is about pixels alone; the selection is not part of it.
class Document : public QObject
{
    Q_OBJECT

public:
    /// Memory that the undo steps of one document may take. As all its pictures are of one size, it is kept
    /// by the number of steps: at least one, at most MaxUndoSteps.
    static constexpr qint64 UndoBudgetBytes = qint64(1) << 30;
    static constexpr int MaxUndoSteps = 50;

    explicit Document(const OpenedPicture& opened, QObject* parent = nullptr);
    ~Document() override;

    RGBA32iImage Picture() const { return m_picture; }
    QSize Size() const { return {m_picture.Width(), m_picture.Height()}; }
    QString Path() const { return m_path; }
    QString Name() const;
    QByteArray Format() const { return m_format; }
    KVImageMetadata Metadata() const { return m_metadata; }
    bool IsDepthReduced() const { return m_depthReduced; }
    /// The file has what would be lost if the picture were written over it: depth or further pictures.
    bool HoldsLessThanItsFile() const { return m_depthReduced || m_hasMorePictures; }

    QUndoStack* UndoStack() { return &m_undoStack; }
    /// Whether the picture differs from the one in the file.
    bool IsModified() const { return !m_picture.SharesPixelsWith(m_savedPicture); }

    /// Makes `picture`, of the same size, the document's picture; `text` names the change for undo.
    void Commit(const RGBA32iImage& picture, const QString& text);
    /// `picture` now is what the file at `path` holds; the document goes by this name from now on.
    void MarkSaved(const RGBA32iImage& picture, const QString& path, const QByteArray& format);

    /// While locked, an adjustment is working on the picture: nothing else may change the document.
    bool IsLocked() const { return m_locked; }
    void SetLocked(bool locked);

    /// What is selected, in coordinates of the picture; empty where there is no selection.
    QPainterPath Selection() const { return m_selection; }
    bool HasSelection() const { return !m_selection.isEmpty(); }
    int Feather() const { return m_feather; }

    /// Selects the part of `shape` that lies on the picture; no part means no selection.
    void Select(const QPainterPath& shape);
    void SelectAll();
    void SelectNone() { Select(QPainterPath()); }
    /// Selects what is not selected; no selection becomes a whole one, and a whole one none.
    void InvertSelection();
    void SetFeather(int pixels);

    /// Calls `use` with the selection's mask once it is computed, at once where it is already. The mask is
    /// the one of the last call's selection; `use` is dropped if `context` is destroyed before. Where there
    /// is no memory for the mask it is missing, and computed anew for the next who asks.
    void WithMask(QObject* context, std::function<void(const operations::Selection&)> use);

signals:
    void PictureChanged();
    void ModifiedChanged(bool modified);
    void PathChanged();
    void LockedChanged(bool locked);
    void SelectionChanged();

private:
    class ChangePicture;

    void SetPicture(const RGBA32iImage& picture);
    void ForgetMask();
    LatestJob<operations::Selection>::Work MakeMask() const;
    void OnMaskReady(const operations::Selection& mask);

    QString m_path;
    QByteArray m_format;
    KVImageMetadata m_metadata;
    bool m_depthReduced;
    bool m_hasMorePictures;
    RGBA32iImage m_picture;
    RGBA32iImage m_savedPicture;
    QUndoStack m_undoStack;
    bool m_locked = false;
    QPainterPath m_selection;
    int m_feather = 0;

    operations::Selection m_mask;
    bool m_isMaskValid = true; ///< m_mask is the mask of the selection
    LatestJob<operations::Selection> m_maskJob{this, [this] { return MakeMask(); }};
    /// Those who wait for the mask; a job is under way while there are any.
    std::vector<std::pair<QPointer<QObject>, std::function<void(const operations::Selection&)>>> m_maskUsers;
};
