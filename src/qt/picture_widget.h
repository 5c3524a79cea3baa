#pragma once

#include <QString>
#include <QWidget>

namespace marlune::qt {

// The picture control: paints one picture of the forms' vocabulary by its name (lamps and
// switch squares of the panel) and reports the operator's mouse. A name it does not know
// paints nothing, as an empty picture box does.
class PictureWidget final : public QWidget {
    Q_OBJECT

public:
    explicit PictureWidget(QWidget* parent = nullptr);

    const QString& picture() const { return picture_; }
    void setPicture(const QString& picture);

    QSize sizeHint() const override { return {16, 16}; }

signals:
    // Buttons as the forms number them: 1 left, 2 right, 4 middle.
    void mouseDown(int button);
    void clicked();
    void doubleClicked();

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;

private:
    QString picture_;
    bool afterDoubleClick_ = false;
};

} // namespace marlune::qt
