// Stands while mail is fetched: loads the Mail Auditor, which fetches and parses, and then shows it, or, for
// the Mail Mapping Wizard, its next step. Cancel ends the fetch; what is stored is shown all the same.
#pragma once
#include "screens/wait_screen.h"

class mfetchinprogress_frm : public wait_screen {
    Q_OBJECT
public:
    explicit mfetchinprogress_frm(QWidget *parent = nullptr);

protected:
    void work() override;
};
