// The console's ground, where the screens open. While none is open it says what to do first.
#pragma once
#include <QMdiArea>

class console_area : public QMdiArea {
    Q_OBJECT
public:
    explicit console_area(QWidget *parent = nullptr);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    bool is_empty() const;
};
