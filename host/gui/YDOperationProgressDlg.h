#pragma once

#include "guicore/YDDialog.h"

class QLabel;
class QProgressBar;

/// Progress of one operation, with a button that aborts it.
///
/// It closes by itself with the result 1 once the range is 0..100 and the position 100, whichever of the
/// two is told last; the user closes it with the result 0.
class YDOperationProgressDlg : public YDDialog
{
    Q_OBJECT

public:
    explicit YDOperationProgressDlg(QWidget* parent = nullptr);

    /// What is being done, as plain text; long texts are wrapped.
    void SetLabel(const QString& text);

    /// As YDDialog::Exec(); 1 at once, with nothing shown, when the operation is complete already.
    int Exec(bool modal) override;

public slots:
    /// A range without extent shows that something goes on, but not how far it is.
    void SetProgressRange(int minimum, int maximum);
    void SetProgressPos(int position);

private:
    bool IsComplete() const;
    void ShowProgress();

    QLabel* m_pLabel;
    QProgressBar* m_pProgress;
    int m_minimum = 0;
    int m_maximum = 100;
    int m_position = 0;
    bool m_isRangeKnown = false;
};
