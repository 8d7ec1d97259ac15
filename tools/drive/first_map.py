"""The way of a new user through the setup and the Mail Mapping Wizard, for the road test and the tour.

seen(NAME) is called where a screen stands as a person meets it: the tour takes its pictures there."""


def nobody(_name):
    pass


def answer(tessaly, question, button):
    """Answers a box with that text."""
    tessaly.find("label", question)
    tessaly.press(tessaly.find("button", button))
    tessaly.until_gone("label", question)


def set_up(tessaly, owner, organisation, accounts, copies, seen=nobody):
    """From the first screen of the setup to the console: name, organisation, (account, address) pairs, back-up folder."""
    tessaly.window("Tessaly Setup")
    tessaly.fill("Admin_t", owner)
    tessaly.fill("org_t", organisation)
    seen("setup-owner")
    tessaly.click("next_b")
    for account, address in accounts:
        tessaly.fill("query_t", account)
        tessaly.fill("email_t", address)
        tessaly.click("add_b")
        tessaly.find("list item", account)
    seen("setup-accounts")
    tessaly.click("next_b")
    tessaly.fill("Folder_t", str(copies))
    seen("setup-back-up-folder")
    tessaly.click("next_b")
    answer(tessaly, f"Do you want to create a new folder called {copies} ?", "Yes")


def fetch_samples(tessaly, seen=nobody):
    """From the wizard's welcome, which opened by itself, to the step behind the fetch."""
    tessaly.window("Welcome to Step-by-step Wizard for setting up Tessaly")
    seen("wizard-welcome")
    tessaly.click("next_b")
    tessaly.window("Map mails Wizard-Step1")
    seen("wizard-accounts")
    tessaly.click("next_b")
    tessaly.window("Map mails Wizard-Step2")


def cut_into_lines(tessaly, subject, seen=nobody):
    """Takes the first mail of that subject and cuts it line by line."""
    tessaly.window("Map mails Wizard-Step2")
    tessaly.choose_row("inbox_lv", subject)
    seen("wizard-sample-mail")
    tessaly.click("Open_b")
    tessaly.window("Map mails Wizard-Step3(A)")
    seen("wizard-cutting")
    tessaly.click("next_b")
    tessaly.window("Map mails Wizard-Step3(B)")


def give_codes(tessaly, pairs, seen=nobody):
    """The reference code of the field at hand: pairs of description and code, or none for one made by the site."""
    tessaly.press(tessaly.control("code_ch"))
    tessaly.click("Values_b")
    tessaly.window("Reference code")
    tessaly.press(tessaly.control("fixed_op" if pairs else "dynamic_op"))
    for description, code in pairs:
        tessaly.fill("desc_t", description)
        tessaly.fill("code_t", code)
        tessaly.click("add_b")
        tessaly.find("list item", code)
    seen("wizard-reference-code")
    tessaly.click("submit_b")
    tessaly.until_gone(None, "Reference code")


def add_field(tessaly, name, piece, ignored=(), codes=None, seen=nobody):
    """Names a piece, takes the ignored texts out of it and adds it; returns what will be stored of it."""
    tessaly.fill("field_t", name)
    tessaly.choose_entry("Line_c", "alt+t", piece, f"Separator{piece}")
    if codes is not None:
        give_codes(tessaly, codes, seen)
    seen("wizard-field")
    tessaly.click("next_b")
    tessaly.window("Map mails wizard - Add this field")
    for text in ignored:
        tessaly.mark("fieldval_t", text)
        tessaly.click("ignore_b")
        tessaly.find("list item", f"“{text}”")
    stored = tessaly.text_of(tessaly.control("stored_t"))
    seen("wizard-ignored-text")
    tessaly.click("save_b")
    tessaly.until_gone(None, "Map mails wizard - Add this field")
    return stored


def save(tessaly, name, fits, seen=nobody):
    """Finish, Save, the map's name; ends with the congratulations. fits: the line of the preview."""
    tessaly.click("finish_b")
    tessaly.window("Save Map")
    tessaly.find("label", fits)
    seen("wizard-save-map")
    tessaly.click("save_b")
    tessaly.fill("mapname_t", name)
    seen("wizard-map-name")
    tessaly.click("save_b")
    tessaly.window("Congratulations!")
    seen("wizard-done")
