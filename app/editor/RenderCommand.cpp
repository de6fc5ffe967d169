#include "editor/RenderCommand.h"

#include "YDTaskWidget.h"
#include "catalog/AdjustmentCatalog.h"
#include "catalog/AdjustmentDialog.h"
#include "catalog/AdjustmentSession.h"
#include "core/KVImageFileManager.h"
#include "editor/DocumentWindow.h"
#include "editor/MainWindow.h"

#include <QCoreApplication>
#include <QDialogButtonBox>
#include <QPainter>
#include <QPixmap>
#include <QPushButton>
#include <QStyle>
#include <QThreadPool>

#include <cstdio>

namespace {

/// The view draws from a smaller copy that the thread pool makes; nothing says when it has come.
constexpr int TickMs = 30;
constexpr int QuietTicks = 5;

/// The dialog as the desktop would show it: with its title above it and a line around.
QPixmap Framed(QWidget& dialog)
{
    const QPixmap content = dialog.grab();
    const qreal ratio = content.devicePixelRatioF();
    const int titleHeight = dialog.fontMetrics().height() + 12;
    QPixmap framed(content.width(), content.height() + qRound(titleHeight * ratio));
    framed.setDevicePixelRatio(ratio);
    const QPalette palette = dialog.palette();
    framed.fill(palette.color(QPalette::Window).darker(112));
    QPainter painter(&framed);
    painter.setPen(palette.color(QPalette::WindowText));
    painter.drawText(QRect(0, 0, dialog.width(), titleHeight), Qt::AlignCenter,
                     dialog.fontMetrics().elidedText(dialog.windowTitle(), Qt::ElideRight, dialog.width()));
    painter.drawPixmap(0, titleHeight, content);
    painter.setPen(palette.color(QPalette::Window).darker(180));
    painter.drawRect(QRectF(0.5, 0.5, dialog.width() - 1, dialog.height() + titleHeight - 1));
    return framed;
}

} // namespace

RenderCommand::RenderCommand(MainWindow& window, const EditorOptions& options)
    : m_window(window), m_options(options)
{
    m_quietTimer.setInterval(TickMs);
    connect(&m_quietTimer, &QTimer::timeout, this, &RenderCommand::OnTick);
    connect(&window, &MainWindow::DocumentOpened, this, &RenderCommand::OnOpened);
    connect(&window, &MainWindow::OpeningFailed, this,
            [this](const QStringList& errors) { Fail(errors.join(QLatin1Char('\n'))); });
}

RenderCommand::~RenderCommand() = default;

void RenderCommand::Start() { m_window.Open(m_options.pictures); }

void RenderCommand::OnOpened(DocumentWindow* window)
{
    m_document = window;
    connect(window, &DocumentWindow::SessionStarted, this, &RenderCommand::OnSessionStarted);
    window->RunAdjustment(*m_options.adjustment);
}

void RenderCommand::OnSessionStarted(AdjustmentSession* session)
{
    m_session = session;
    YDTaskWidget* const widget = session->Dialog()->Widget();
    m_options.adjustment->show(*widget, *m_options.settings);
    session->Restart();
    connect(session, &AdjustmentSession::PreviewReady, this, &RenderCommand::OnPreview);
    connect(session, &AdjustmentSession::Accepted, this, &RenderCommand::WriteResult, Qt::QueuedConnection);
    connect(session, &AdjustmentSession::Failed, this, &RenderCommand::Fail);
}

void RenderCommand::OnPreview() { m_quietTimer.start(); }

void RenderCommand::OnTick()
{
    m_quietTicks = QThreadPool::globalInstance()->activeThreadCount() == 0 ? m_quietTicks + 1 : 0;
    if (m_quietTicks < QuietTicks)
        return;
    m_quietTimer.stop();
    const QString error = TakePictureOfWindow();
    if (error.isEmpty())
        PressOk();
    else
        Fail(error);
}

/// An empty answer, or why the picture could not be written.
QString RenderCommand::TakePictureOfWindow()
{
    if (m_options.windowPath.isEmpty())
        return {};
    AdjustmentDialog& dialog = *m_session->Dialog();
    QPixmap picture = m_window.grab();
    const QPixmap framed = Framed(dialog);
    QPainter painter(&picture);
    painter.drawPixmap(dialog.mapToGlobal(QPoint(0, 0)) - m_window.mapToGlobal(QPoint(0, 0)), framed);
    painter.end();
    KVImageFileManager::WriteOptions options;
    options.overwrite = true;
    return KVImageFileManager::Write(m_options.windowPath, picture.toImage(), {}, options).error;
}

void RenderCommand::PressOk()
{
    const auto* const buttons =
        m_session->Dialog()->findChild<QDialogButtonBox*>(QStringLiteral("m_pButtons"));
    buttons->button(QDialogButtonBox::Ok)->click();
}

void RenderCommand::WriteResult()
{
    if (!m_options.outputPath.isEmpty()) {
        KVImageFileManager::WriteOptions options;
        options.overwrite = true;
        Document& document = *m_document->GetDocument();
        const QString error =
            KVImageFileManager::Write(m_options.outputPath, ImageToQImage(document.Picture()),
                                      document.Metadata(), options)
                .error;
        if (!error.isEmpty()) {
            Fail(error);
            return;
        }
    }
    QCoreApplication::exit(0);
}

void RenderCommand::Fail(const QString& error)
{
    std::fprintf(stderr, "adjust-editor: %s\n", qPrintable(error));
    QCoreApplication::exit(1);
}
