-- The tables of a fresh store, in SQLite's own writing.
--
-- Declared types, as src/platform/real/jet/schema.cpp reads them:
--   TEXT(n)   text of at most n characters          LONGTEXT  text of any length
--   INTEGER   whole number                          DATETIME  'YYYY-MM-DD HH:MM:SS'
--   YESNO     yes is -1, no is 0, never Null        INTEGER PRIMARY KEY AUTOINCREMENT  the row's number
-- No other names for them: "memo", "number" or "date" would give a column numeric affinity, and '0042' become 42.
-- The order of the columns counts: some rows are written and printed by position.

PRAGMA application_id = 1414746956; -- "TSSL"
PRAGMA user_version = 1;

-- Start-up and timers

CREATE TABLE "install_tbl"(
    "install" YESNO NOT NULL DEFAULT 0 CHECK("install" IN (0,-1))
);

CREATE TABLE "autofetch"(
    "minutes" INTEGER
);

CREATE TABLE "lastdate"(
    "id" INTEGER,
    "gendate" TEXT(50) COLLATE NOCASE CHECK(length("gendate")<=50)
);

-- Accounts and maps

CREATE TABLE "email_tbl"(
    "id" INTEGER PRIMARY KEY AUTOINCREMENT,
    "query" TEXT(255) COLLATE NOCASE CHECK(length("query")<=255),
    "email" TEXT(255) COLLATE NOCASE CHECK(length("email")<=255),
    "table_name" TEXT(255) COLLATE NOCASE CHECK(length("table_name")<=255)
);

CREATE TABLE "table_list_tbl"(
    "table_id" INTEGER PRIMARY KEY AUTOINCREMENT,
    "table_name" TEXT(255) COLLATE NOCASE CHECK(length("table_name")<=255),
    "date_created" DATETIME,
    "query_id" INTEGER,
    "lastformat" YESNO NOT NULL DEFAULT 0 CHECK("lastformat" IN (0,-1)),
    "seperator" TEXT(255) COLLATE NOCASE CHECK(length("seperator")<=255),
    "subject" TEXT(255) COLLATE NOCASE CHECK(length("subject")<=255)
);

CREATE TABLE "format_tbl"(
    "id" INTEGER PRIMARY KEY AUTOINCREMENT,
    "fname" TEXT(255) COLLATE NOCASE CHECK(length("fname")<=255),
    "fposition" TEXT(255) COLLATE NOCASE CHECK(length("fposition")<=255),
    "fignore" LONGTEXT COLLATE NOCASE,
    "finclude" YESNO NOT NULL DEFAULT 0 CHECK("finclude" IN (0,-1)),
    "table_id" INTEGER,
    "fcodegen" INTEGER
);

CREATE TABLE "fcodes_tbl"(
    "id" INTEGER PRIMARY KEY AUTOINCREMENT,
    "fieldID" INTEGER,
    "fielddesc" TEXT(255) COLLATE NOCASE CHECK(length("fielddesc")<=255),
    "fieldCODE" TEXT(255) COLLATE NOCASE CHECK(length("fieldCODE")<=255)
);

-- Auto-responder

CREATE TABLE "autocontent"(
    "Mapname" TEXT(255) COLLATE NOCASE CHECK(length("Mapname")<=255),
    "SubjectType" INTEGER,
    "Subject" TEXT(255) COLLATE NOCASE CHECK(length("Subject")<=255),
    "SubjectPrefix" TEXT(255) COLLATE NOCASE CHECK(length("SubjectPrefix")<=255),
    "SubjectDynamic" TEXT(255) COLLATE NOCASE CHECK(length("SubjectDynamic")<=255),
    "SubjectSuffix" TEXT(255) COLLATE NOCASE CHECK(length("SubjectSuffix")<=255),
    "GreetText" TEXT(255) COLLATE NOCASE CHECK(length("GreetText")<=255),
    "GreetField" TEXT(255) COLLATE NOCASE CHECK(length("GreetField")<=255),
    "LastToken" TEXT(255) COLLATE NOCASE CHECK(length("LastToken")<=255),
    "autocontent" LONGTEXT COLLATE NOCASE,
    "enable" YESNO NOT NULL DEFAULT 0 CHECK("enable" IN (0,-1))
);

-- Mailing and reports

CREATE TABLE "sentitems_tbl"(
    "sentid" INTEGER PRIMARY KEY AUTOINCREMENT,
    "tsl_to" TEXT(255) COLLATE NOCASE CHECK(length("tsl_to")<=255),
    "tsl_subject" TEXT(255) COLLATE NOCASE CHECK(length("tsl_subject")<=255),
    "tsl_sentdate" TEXT(255) COLLATE NOCASE CHECK(length("tsl_sentdate")<=255),
    "tsl_body" LONGTEXT COLLATE NOCASE,
    "tsl_sentaccount" TEXT(255) COLLATE NOCASE CHECK(length("tsl_sentaccount")<=255),
    "tsl_sentmailid" TEXT(255) COLLATE NOCASE CHECK(length("tsl_sentmailid")<=255),
    "tsl_sentformat" TEXT(255) COLLATE NOCASE CHECK(length("tsl_sentformat")<=255),
    "matchid" INTEGER
);

CREATE TABLE "match_tbl"(
    "ac_name" TEXT(255) COLLATE NOCASE CHECK(length("ac_name")<=255),
    "from_dt" TEXT(50) COLLATE NOCASE CHECK(length("from_dt")<=50),
    "to_dt" TEXT(50) COLLATE NOCASE CHECK(length("to_dt")<=50),
    "sub_copy" TEXT(255) COLLATE NOCASE CHECK(length("sub_copy")<=255),
    "sub_contains" TEXT(255) COLLATE NOCASE CHECK(length("sub_contains")<=255),
    "filter1" TEXT(255) COLLATE NOCASE CHECK(length("filter1")<=255),
    "filter2" TEXT(255) COLLATE NOCASE CHECK(length("filter2")<=255),
    "filter3" TEXT(255) COLLATE NOCASE CHECK(length("filter3")<=255),
    "filter4" TEXT(255) COLLATE NOCASE CHECK(length("filter4")<=255),
    "fval1" TEXT(255) COLLATE NOCASE CHECK(length("fval1")<=255),
    "fval2" TEXT(255) COLLATE NOCASE CHECK(length("fval2")<=255),
    "fval3" TEXT(255) COLLATE NOCASE CHECK(length("fval3")<=255),
    "fval4" TEXT(255) COLLATE NOCASE CHECK(length("fval4")<=255),
    "matchid" INTEGER PRIMARY KEY AUTOINCREMENT
);

CREATE TABLE "mail_list_tbl"(
    "id" INTEGER PRIMARY KEY AUTOINCREMENT,
    "mname" TEXT(255) COLLATE NOCASE CHECK(length("mname")<=255),
    "mapaccount" TEXT(255) COLLATE NOCASE CHECK(length("mapaccount")<=255),
    "betweendate" TEXT(255) COLLATE NOCASE CHECK(length("betweendate")<=255),
    "filtersused" LONGTEXT COLLATE NOCASE,
    "sub_pre" TEXT(255) COLLATE NOCASE CHECK(length("sub_pre")<=255),
    "sub_field" TEXT(255) COLLATE NOCASE CHECK(length("sub_field")<=255),
    "sub_suf" TEXT(255) COLLATE NOCASE CHECK(length("sub_suf")<=255),
    "email_pre" TEXT(255) COLLATE NOCASE CHECK(length("email_pre")<=255),
    "email_field" TEXT(255) COLLATE NOCASE CHECK(length("email_field")<=255),
    "email_suf" TEXT(255) COLLATE NOCASE CHECK(length("email_suf")<=255),
    "mlistdate" DATETIME
);

CREATE TABLE "mlist_details_tbl"(
    "mtbl_id" INTEGER,
    "datecreated" DATETIME,
    "mail" TEXT(255) COLLATE NOCASE CHECK(length("mail")<=255),
    "sub_dyn" LONGTEXT COLLATE NOCASE,
    "line_dyn" LONGTEXT COLLATE NOCASE,
    "query" TEXT(255) COLLATE NOCASE CHECK(length("query")<=255),
    "message_id" INTEGER
);

CREATE TABLE "printreport_tbl"(
    "id" INTEGER PRIMARY KEY AUTOINCREMENT,
    "sentaccount" TEXT(255) COLLATE NOCASE CHECK(length("sentaccount")<=255),
    "between1" TEXT(255) COLLATE NOCASE CHECK(length("between1")<=255),
    "filtersused" LONGTEXT COLLATE NOCASE,
    "dynsubjectfield" TEXT(255) COLLATE NOCASE CHECK(length("dynsubjectfield")<=255),
    "subjectcontains" TEXT(255) COLLATE NOCASE CHECK(length("subjectcontains")<=255),
    "mailgen" TEXT(255) COLLATE NOCASE CHECK(length("mailgen")<=255),
    "matching" TEXT(255) COLLATE NOCASE CHECK(length("matching")<=255),
    "sentto" TEXT(255) COLLATE NOCASE CHECK(length("sentto")<=255),
    "sentsubject" LONGTEXT COLLATE NOCASE,
    "sentdate" DATETIME,
    "gendate" DATETIME
);

CREATE TABLE "mlistprintreport_tbl"(
    "sentaccount" TEXT(255) COLLATE NOCASE CHECK(length("sentaccount")<=255),
    "between1" TEXT(255) COLLATE NOCASE CHECK(length("between1")<=255),
    "filters_used" LONGTEXT COLLATE NOCASE,
    "subjectfield" LONGTEXT COLLATE NOCASE,
    "mailfline" LONGTEXT COLLATE NOCASE,
    "mailgen" TEXT(255) COLLATE NOCASE CHECK(length("mailgen")<=255),
    "maillistname" TEXT(255) COLLATE NOCASE CHECK(length("maillistname")<=255)
);

CREATE TABLE "mlistreportbody_tbl"(
    "sentto" TEXT(255) COLLATE NOCASE CHECK(length("sentto")<=255),
    "subject" LONGTEXT COLLATE NOCASE,
    "sentd" TEXT(255) COLLATE NOCASE CHECK(length("sentd")<=255)
);

CREATE TABLE "sign"(
    "signtitle" TEXT(255) COLLATE NOCASE CHECK(length("signtitle")<=255),
    "signtext" LONGTEXT COLLATE NOCASE,
    "signselected" TEXT(255) COLLATE NOCASE CHECK(length("signselected")<=255)
);

-- Unsubscribing

CREATE TABLE "unsubscribe_tbl"(
    "email" TEXT(255) COLLATE NOCASE CHECK(length("email")<=255)
);

CREATE TABLE "unsub_detail"(
    "unsub_text" LONGTEXT COLLATE NOCASE,
    "unsub_keyword" TEXT(255) COLLATE NOCASE CHECK(length("unsub_keyword")<=255),
    "unsub_fontname" TEXT(255) COLLATE NOCASE CHECK(length("unsub_fontname")<=255),
    "unsub_fontsize" TEXT(255) COLLATE NOCASE CHECK(length("unsub_fontsize")<=255),
    "enable_unsub" YESNO NOT NULL DEFAULT 0 CHECK("enable_unsub" IN (0,-1)),
    "noformat" INTEGER,
    "msgname" TEXT(255) COLLATE NOCASE CHECK(length("msgname")<=255),
    "lasttoken" INTEGER
);

CREATE TABLE "unsub_entryno"(
    "email" TEXT(255) COLLATE NOCASE CHECK(length("email")<=255),
    "entryno" TEXT(255) COLLATE NOCASE CHECK(length("entryno")<=255)
);

CREATE TABLE "unsub_msg"(
    "msg_name" TEXT(255) COLLATE NOCASE CHECK(length("msg_name")<=255),
    "unsubmsg" LONGTEXT COLLATE NOCASE
);

CREATE TABLE "unsubconfirm_tbl"(
    "mailsubject" TEXT(255) COLLATE NOCASE CHECK(length("mailsubject")<=255),
    "mailcontent" LONGTEXT COLLATE NOCASE,
    "addquery" YESNO NOT NULL DEFAULT 0 CHECK("addquery" IN (0,-1)),
    "signature" TEXT(255) COLLATE NOCASE CHECK(length("signature")<=255)
);

-- Online forms

CREATE TABLE "form_tbl"(
    "fdesc" TEXT(255) COLLATE NOCASE CHECK(length("fdesc")<=255),
    "fftype" TEXT(255) COLLATE NOCASE CHECK(length("fftype")<=255),
    "fdtype" TEXT(255) COLLATE NOCASE CHECK(length("fdtype")<=255),
    "fposition" INTEGER,
    "fstatus" TEXT(255) COLLATE NOCASE CHECK(length("fstatus")<=255),
    "fcode" YESNO NOT NULL DEFAULT 0 CHECK("fcode" IN (0,-1)),
    "flabel" YESNO NOT NULL DEFAULT 0 CHECK("flabel" IN (0,-1)),
    "Fini" INTEGER,
    "Fmul" YESNO NOT NULL DEFAULT 0 CHECK("Fmul" IN (0,-1)),
    "Fnull" YESNO NOT NULL DEFAULT 0 CHECK("Fnull" IN (0,-1)),
    "fvtype" INTEGER,
    "fquery" TEXT(255) COLLATE NOCASE CHECK(length("fquery")<=255),
    "ftransfer" TEXT(255) COLLATE NOCASE CHECK(length("ftransfer")<=255)
);

CREATE TABLE "final_form_tbl"(
    "fdesc" TEXT(255) COLLATE NOCASE CHECK(length("fdesc")<=255),
    "fftype" TEXT(255) COLLATE NOCASE CHECK(length("fftype")<=255),
    "fdtype" TEXT(255) COLLATE NOCASE CHECK(length("fdtype")<=255),
    "fposition" INTEGER,
    "fstatus" TEXT(255) COLLATE NOCASE CHECK(length("fstatus")<=255),
    "fcode" YESNO NOT NULL DEFAULT 0 CHECK("fcode" IN (0,-1)),
    "flabel" YESNO NOT NULL DEFAULT 0 CHECK("flabel" IN (0,-1)),
    "Fini" INTEGER,
    "Fmul" YESNO NOT NULL DEFAULT 0 CHECK("Fmul" IN (0,-1)),
    "Fnull" YESNO NOT NULL DEFAULT 0 CHECK("Fnull" IN (0,-1)),
    "fvtype" INTEGER,
    "fquery" TEXT(255) COLLATE NOCASE CHECK(length("fquery")<=255),
    "ftransfer" TEXT(255) COLLATE NOCASE CHECK(length("ftransfer")<=255)
);

CREATE TABLE "form_sup_tbl"(
    "id" INTEGER PRIMARY KEY AUTOINCREMENT,
    "fdesc" TEXT(255) COLLATE NOCASE CHECK(length("fdesc")<=255),
    "lvalue" TEXT(255) COLLATE NOCASE CHECK(length("lvalue")<=255)
);

CREATE TABLE "form_links_tbl"(
    "link_name" TEXT(255) COLLATE NOCASE CHECK(length("link_name")<=255),
    "link_file" TEXT(255) COLLATE NOCASE CHECK(length("link_file")<=255)
);

CREATE TABLE "fnames_tbl"(
    "fname" TEXT(255) COLLATE NOCASE CHECK(length("fname")<=255)
);

CREATE TABLE "felements_tbl"(
    "fid" INTEGER,
    "form_description" TEXT(255) COLLATE NOCASE CHECK(length("form_description")<=255)
);

CREATE TABLE "htmlform_tbl"(
    "id" INTEGER PRIMARY KEY AUTOINCREMENT,
    "htmlfile" TEXT(255) COLLATE NOCASE CHECK(length("htmlfile")<=255),
    "uplgif" TEXT(255) COLLATE NOCASE CHECK(length("uplgif")<=255),
    "description" TEXT(255) COLLATE NOCASE CHECK(length("description")<=255),
    "bgcolor" TEXT(255) COLLATE NOCASE CHECK(length("bgcolor")<=255),
    "fgcolor" TEXT(255) COLLATE NOCASE CHECK(length("fgcolor")<=255),
    "template" TEXT(255) COLLATE NOCASE CHECK(length("template")<=255),
    "fontsize" TEXT(255) COLLATE NOCASE CHECK(length("fontsize")<=255),
    "fontname" TEXT(255) COLLATE NOCASE CHECK(length("fontname")<=255),
    "fontbold" YESNO NOT NULL DEFAULT 0 CHECK("fontbold" IN (0,-1)),
    "fontitalic" YESNO NOT NULL DEFAULT 0 CHECK("fontitalic" IN (0,-1)),
    "font_res_name" TEXT(255) COLLATE NOCASE CHECK(length("font_res_name")<=255),
    "font_res_size" TEXT(255) COLLATE NOCASE CHECK(length("font_res_size")<=255),
    "Heading" TEXT(255) COLLATE NOCASE CHECK(length("Heading")<=255)
);

CREATE TABLE "meta_tbl"(
    "meta_name" TEXT(255) COLLATE NOCASE CHECK(length("meta_name")<=255),
    "meta_desc" LONGTEXT COLLATE NOCASE
);

CREATE TABLE "host_details"(
    "hostname" TEXT(255) COLLATE NOCASE CHECK(length("hostname")<=255),
    "hostip" TEXT(255) COLLATE NOCASE CHECK(length("hostip")<=255),
    "hostusername" TEXT(255) COLLATE NOCASE CHECK(length("hostusername")<=255),
    "hostpassword" TEXT(255) COLLATE NOCASE CHECK(length("hostpassword")<=255),
    "hostcomment" TEXT(255) COLLATE NOCASE CHECK(length("hostcomment")<=255),
    "hostemail" TEXT(255) COLLATE NOCASE CHECK(length("hostemail")<=255),
    "hosttype" TEXT(255) COLLATE NOCASE CHECK(length("hosttype")<=255)
);

-- Labels

CREATE TABLE "lbl_save"(
    "recdesc" TEXT(255) COLLATE NOCASE CHECK(length("recdesc")<=255),
    "ltype" TEXT(255) COLLATE NOCASE CHECK(length("ltype")<=255),
    "lsize" TEXT(255) COLLATE NOCASE CHECK(length("lsize")<=255),
    "field1" TEXT(255) COLLATE NOCASE CHECK(length("field1")<=255),
    "field2" TEXT(255) COLLATE NOCASE CHECK(length("field2")<=255),
    "field3" TEXT(255) COLLATE NOCASE CHECK(length("field3")<=255),
    "field4" TEXT(255) COLLATE NOCASE CHECK(length("field4")<=255),
    "field5" TEXT(255) COLLATE NOCASE CHECK(length("field5")<=255),
    "field6" TEXT(255) COLLATE NOCASE CHECK(length("field6")<=255),
    "field7" TEXT(255) COLLATE NOCASE CHECK(length("field7")<=255),
    "field8" TEXT(255) COLLATE NOCASE CHECK(length("field8")<=255),
    "table_name" TEXT(255) COLLATE NOCASE CHECK(length("table_name")<=255),
    "lastsaved" YESNO NOT NULL DEFAULT 0 CHECK("lastsaved" IN (0,-1))
);

CREATE TABLE "formula_tbl"(
    "formula1" LONGTEXT COLLATE NOCASE,
    "formula2" LONGTEXT COLLATE NOCASE,
    "formula3" LONGTEXT COLLATE NOCASE,
    "formula4" LONGTEXT COLLATE NOCASE,
    "formula5" LONGTEXT COLLATE NOCASE,
    "formula6" LONGTEXT COLLATE NOCASE,
    "formula7" LONGTEXT COLLATE NOCASE,
    "formula8" LONGTEXT COLLATE NOCASE
);

CREATE TABLE "LabelSpec"(
    "description" TEXT(255) COLLATE NOCASE CHECK(length("description")<=255),
    "product_code" TEXT(255) COLLATE NOCASE CHECK(length("product_code")<=255),
    "Product_size_text" TEXT(255) COLLATE NOCASE CHECK(length("Product_size_text")<=255)
);

-- The models of account tables and of map tables

CREATE TABLE "model_for_first"(
    "message_id" INTEGER PRIMARY KEY AUTOINCREMENT,
    "tsl_subject" LONGTEXT COLLATE NOCASE,
    "tsl_recdate" DATETIME,
    "tsl_Email" LONGTEXT COLLATE NOCASE,
    "tsl_Status" TEXT(255) COLLATE NOCASE CHECK(length("tsl_Status")<=255),
    "tsl_body" LONGTEXT COLLATE NOCASE,
    "tsl_processed" YESNO NOT NULL DEFAULT 0 CHECK("tsl_processed" IN (0,-1))
);

CREATE TABLE "model_tbl"(
    "message_id" INTEGER PRIMARY KEY AUTOINCREMENT,
    "tsl_subject" LONGTEXT COLLATE NOCASE,
    "tsl_RecDate" DATETIME,
    "tsl_Email" LONGTEXT COLLATE NOCASE,
    "tsl_status" TEXT(255) COLLATE NOCASE CHECK(length("tsl_status")<=255)
);

-- Mails are looked up by the moment of receiving; tables made from the model get this index too.
CREATE INDEX "~index:model_for_first:tsl_recdate" ON "model_for_first"("tsl_recdate");
