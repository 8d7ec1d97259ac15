// The preferences page "Accounts": the addresses that form mail is expected at. What it may add and change:
// accounts/account_checks.h; what then happens in the store: accounts/account_rows.h.
#pragma once
#include "accounts/account_rows.h"
#include "screens/screen.h"
#include <memory>

namespace Ui {
class Accounts;
}
namespace accounts {
struct fault;
}

class Accounts : public screen {
    Q_OBJECT
public:
    explicit Accounts(QWidget *parent = nullptr);
    ~Accounts() override;
    void Load() override;
    void Activate() override;

    void PopulateQuery(); // query_c anew, on "Select query"

private:
    void query_c_Click();
    void add_b_Click();
    void change_b_Click();
    void Delete_b_Click();
    void tell(const accounts::fault &fault);
    void tell_half_done(const QString &query);
    void fill_query_c();
    void show_chosen();
    void tell_gone(const QString &query);
    QString chosen_query() const; // "" with "Select query"

    std::unique_ptr<Ui::Accounts> ui;
    std::optional<accounts::entry> chosen; // as it was when it was chosen
};
