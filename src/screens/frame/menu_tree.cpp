#include "screens/frame/menu_tree.h"

const std::vector<menu_entry> &menu_tree()
{
    static const std::vector<menu_entry> tree{
        {0, true, "file", "&File"},
        {1, true, "da", "&Database"},
        {2, false, "import1", "&Import"},
        {2, false, "export", "&Export"},
        {2, false, "dma", "&Manager"},
        {1, false, "bkp_folder_mnu", "&Back-up Folder"},
        {1, false, "rst_bkp", "Restore from Backup"},
        {1, false, "exit", "E&xit"},

        {0, true, "mail", "&Mail"},
        {1, false, "fetchmail", "&Fetch Mail"},
        {1, false, "direct_mail", "M&ail Wizard"},
        {1, false, "mmw", "&Mail Mapping Wizard"},
        {1, true, "menu", "Mail &Template Wizard"},
        {2, false, "nt", "New Template"},
        {2, false, "ot", "Open Existing Template"},
        {1, false, "mauditor_mnu", "Mail A&uditor"},
        {1, false, "unsubopt_mnu", "&Subscription Manager"},
        {1, false, "outbox_mnu", "&Outbox"},

        {0, true, "label", "&Labels"},
        {1, false, "label1", "Label &Formatter"},
        {1, false, "gen_lab", "Label &Wizard"},
        {1, false, "lprint", "&Print"},

        {0, true, "webform_mnu", "&Web Form"},
        {1, false, "frmBuild_mnu", "Form &Building Wizard"},
        {1, false, "amendEx_mnu", "&Amend Existing Form"},
        {1, false, "ftp", "&FTP Wizard"},

        {0, true, "preferences", "&Preferences"},
        {1, false, "general", "General"},
        {1, false, "account", "Accounts"},
        {1, false, "mail_client_mnu", "&Mail Client"},

        {0, true, "help", "&Help"},
        {1, false, "contents", "&Contents              F1"},
        {1, false, "showtips", "&Show Tips"},
        {1, false, "about", "&About"},

        {0, true, "openprev", "&Open"},
        {1, false, "openex_mnu", "Open Tessaly Form"},
        {1, false, "openmy_mnu", "Open My Own Form"},

        {0, true, "composer_mnu", "&Composer"},
        {1, true, "edit_composer", "Edit"},
        {1, true, "view_composer", "View"},
        {1, true, "ins_c", "Insert"},
        {1, true, "format_composer", "Format"},
        {1, true, "table", "Table"},
    };
    return tree;
}
