#include "qt/program_editor.h"

#include <QAction>
#include <QDynamicPropertyChangeEvent>
#include <QFontDatabase>
#include <QInputDialog>
#include <QMessageBox>
#include <QPainter>
#include <QTextBlock>

#include <algorithm>

#include "qt/program_highlighter.h"
#include "qt/shown_text.h"
#include "qt/text_sync.h"

namespace marlune::qt {

namespace {

constexpr int kMarginPadding = 6;
const QColor kMarginPaper(0xf0, 0xf0, 0xec);
const QColor kMarginInk(0x90, 0x90, 0x90);
const QColor kCurrentLine(0xfd, 0xf8, 0xdc);

} // namespace

class ProgramEditor::Margin final : public QWidget {
public:
    explicit Margin(ProgramEditor& editor) : QWidget(&editor), editor_(editor) {}

protected:
    void paintEvent(QPaintEvent* event) override { editor_.paintMargin(*event); }

private:
    ProgramEditor& editor_;
};

ProgramEditor::ProgramEditor(QWidget* parent)
    : QPlainTextEdit(parent), margin_(new Margin(*this)), highlighter_(new ProgramHighlighter(document()))
{
    setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    // A line of the program is a line of the controller: it is never wrapped.
    setLineWrapMode(NoWrap);
    connect(this, &QPlainTextEdit::blockCountChanged, this, &ProgramEditor::placeMargin);
    connect(this, &QPlainTextEdit::updateRequest, this, &ProgramEditor::scrollMargin);
    connect(this, &QPlainTextEdit::cursorPositionChanged, this, &ProgramEditor::markCurrentLine);
    placeMargin();
    markCurrentLine();
    // Children of the editor, so that they act while its window has the focus and the frame's
    // menus see them as shortcuts of the window.
    const auto shortcut = [this](const QKeySequence& keys, void (ProgramEditor::*run)()) {
        auto* action = new QAction(this);
        action->setShortcut(keys);
        action->setShortcutContext(Qt::WidgetWithChildrenShortcut);
        connect(action, &QAction::triggered, this, run);
        addAction(action);
    };
    shortcut(QKeySequence::Find, &ProgramEditor::askFind);
    shortcut(QKeySequence::FindNext, &ProgramEditor::findAgain);
    shortcut(QKeySequence(Qt::CTRL | Qt::Key_G), &ProgramEditor::askLine);
}

bool ProgramEditor::findNext(const QString& term)
{
    if (term.isEmpty())
        return false;
    if (find(term))
        return true;
    const QTextCursor before = textCursor();
    moveCursor(QTextCursor::Start);
    if (find(term))
        return true;
    setTextCursor(before);
    return false;
}

void ProgramEditor::goToLine(int line)
{
    const QTextBlock block = document()->findBlockByNumber(std::clamp(line, 1, blockCount()) - 1);
    setTextCursor(QTextCursor(block));
    centerCursor();
}

void ProgramEditor::askFind()
{
    bool ok = false;
    const QString term = QInputDialog::getText(this, tr("Find"), tr("Find:"), QLineEdit::Normal, lastTerm_, &ok);
    if (!ok || term.isEmpty())
        return;
    lastTerm_ = term;
    findAgain();
}

void ProgramEditor::findAgain()
{
    if (lastTerm_.isEmpty())
        askFind();
    else if (!findNext(lastTerm_))
        QMessageBox::information(this, tr("Find"), tr("\"%1\" was not found.").arg(lastTerm_));
}

void ProgramEditor::askLine()
{
    bool ok = false;
    const int line = QInputDialog::getInt(this, tr("Go to Line"), tr("Line (1 to %1):").arg(blockCount()),
                                          textCursor().blockNumber() + 1, 1, blockCount(), 1, &ok);
    if (ok)
        goToLine(line);
}

int ProgramEditor::marginWidth() const
{
    const auto digits = QString::number(blockCount()).size();
    return fontMetrics().horizontalAdvance(QLatin1Char('9')) * static_cast<int>(digits) + 2 * kMarginPadding;
}

void ProgramEditor::placeMargin()
{
    const int width = marginWidth();
    setViewportMargins(width, 0, 0, 0);
    const QRect area = contentsRect();
    margin_->setGeometry(area.left(), area.top(), width, area.height());
}

void ProgramEditor::resizeEvent(QResizeEvent* event)
{
    QPlainTextEdit::resizeEvent(event);
    placeMargin();
}

void ProgramEditor::changeEvent(QEvent* event)
{
    QPlainTextEdit::changeEvent(event);
    // The binder sets the form's own font; the digits' width goes with it.
    if (event->type() == QEvent::FontChange)
        placeMargin();
}

bool ProgramEditor::event(QEvent* event)
{
    if (event->type() == QEvent::DynamicPropertyChange
        && static_cast<QDynamicPropertyChangeEvent*>(event)->propertyName() == kMarkedWords) {
        std::vector<std::string> names;
        for (const QString& name : property(kMarkedWords).toStringList())
            names.push_back(ModelText(name));
        highlighter_->setDefinedNames(std::move(names));
    }
    return QPlainTextEdit::event(event);
}

void ProgramEditor::scrollMargin(const QRect& rect, int dy)
{
    if (dy != 0)
        margin_->scroll(0, dy);
    else
        margin_->update(0, rect.y(), margin_->width(), rect.height());
}

void ProgramEditor::paintMargin(const QPaintEvent& event)
{
    QPainter painter(margin_);
    painter.fillRect(event.rect(), kMarginPaper);
    painter.setPen(kMarginInk);
    const int lineHeight = fontMetrics().height();
    QTextBlock block = firstVisibleBlock();
    int top = qRound(blockBoundingGeometry(block).translated(contentOffset()).top());
    while (block.isValid() && top <= event.rect().bottom()) {
        const int bottom = top + qRound(blockBoundingRect(block).height());
        if (block.isVisible() && bottom >= event.rect().top()) {
            painter.drawText(0, top, margin_->width() - kMarginPadding, lineHeight, Qt::AlignRight,
                             QString::number(block.blockNumber() + 1));
        }
        block = block.next();
        top = bottom;
    }
}

void ProgramEditor::markCurrentLine()
{
    QTextEdit::ExtraSelection line;
    line.format.setBackground(kCurrentLine);
    line.format.setProperty(QTextFormat::FullWidthSelection, true);
    line.cursor = textCursor();
    line.cursor.clearSelection();
    setExtraSelections({line});
}

} // namespace marlune::qt
