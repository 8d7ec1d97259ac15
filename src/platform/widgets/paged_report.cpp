#include "platform/widgets/paged_report.h"

#include <algorithm>

QPageSize usual_page_size(const QLocale &place)
{
    // The metric system says nothing about paper: these measure in metres and write on Letter.
    static constexpr QLocale::Territory letter_users[] = {
        QLocale::UnitedStates, QLocale::Canada,    QLocale::Mexico,    QLocale::Philippines,
        QLocale::Chile,        QLocale::Colombia,  QLocale::CostaRica, QLocale::DominicanRepublic,
        QLocale::ElSalvador,   QLocale::Guatemala, QLocale::Nicaragua, QLocale::Panama,
        QLocale::PuertoRico,   QLocale::Venezuela};
    const bool letter =
        std::find(std::begin(letter_users), std::end(letter_users), place.territory()) != std::end(letter_users);
    return QPageSize(letter ? QPageSize::Letter : QPageSize::A4);
}

QSizeF lay_out_on_own_paper(paged_report &report)
{
    const QSizeF page = report.page_size().size(QPageSize::Inch) * units_an_inch;
    report.lay_out(page);
    return page;
}
