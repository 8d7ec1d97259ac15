// Forms, pages, publishing, hosts and labels: each statement with its effect.
#include "support/statement_effects.h"
#include <QTest>

class statements_forms_test : public QObject {
    Q_OBJECT

private slots:
    void definition_data();
    void definition() { check_effect(); }
    void pages_data();
    void pages() { check_effect(); }
    void publishing_data();
    void publishing() { check_effect(); }
    void labels_data();
    void labels() { check_effect(); }
};

namespace {

const QString city_field = "insert into form_tbl (fdesc,fftype,fposition,fcode,flabel,fdtype,fini,fmul,fnull,fvtype,"
                           "fquery,ftransfer) values('City','Textbox',0,1,0,'no',0,0,0,3,3,'')";
const QString city_row = "City|Textbox|no|0|-|True|False|0|False|False|3|3|";
const QString name_field = "insert into form_tbl (fdesc,fposition,fdtype,fcode) values('Name',1,'YES',True)";
const QString host = "insert into host_details (hostname,hostip,hostusername,hostpassword,hostcomment,hostemail,"
                     "hosttype) values('Mine','ftp.site.org','jo','pw','','no','Linux/Unix')";
const QString a4 = "insert into lbl_save (ltype, lsize, recdesc, lastsaved,table_name, field1, field2) "
                   "values('Avery L7160','63x38','A4', yes,'cust', 'first_name,city', '')";
const QString a5 = "insert into lbl_save (recdesc, lastsaved,table_name) values('A5', no,'cust')";

}

void statements_forms_test::definition_data()
{
    effect_columns();
    effect("155 links emptied", "insert into form_links_tbl (link_name) values('x') ;; delete from form_links_tbl",
           "select count(*) from form_links_tbl", "0");
    effect("156 options emptied", "insert into form_sup_tbl (fdesc) values('x') ;; delete from form_sup_tbl",
           "select count(*) from form_sup_tbl", "0");
    effect("157 fields emptied", city_field + " ;; delete from form_tbl", "select count(*) from form_tbl", "0");
    effect("158 the page emptied", "insert into htmlform_tbl (htmlfile) values('x') ;; delete from htmlform_tbl",
           "select count(*) from htmlform_tbl", "0");
    effect("159 tags emptied",
           "update meta_tbl set meta_desc='x' where meta_name='keywords' ;; update meta_tbl set meta_desc=''",
           "select count(*) from meta_tbl where meta_desc<>''", "0");
    effect("160 field names", "select count(*) from fnames_tbl where fname='E-MAIL'", "", "1");
    effect("161 options of a field go",
           "insert into form_sup_tbl (fdesc,lvalue) values('City','Paris') ;; "
           "insert into form_sup_tbl (fdesc,lvalue) values('Size','L') ;; delete from form_sup_tbl where fdesc='city'",
           "select fdesc from form_sup_tbl", "Size");
    effect("162 an option", "insert into form_sup_tbl (fdesc,lvalue) values('City','Paris')",
           "select * from form_sup_tbl", "1|City|Paris");
    effect("163 options in their order",
           "insert into form_sup_tbl (fdesc,lvalue) values('City','Rome') ;; "
           "insert into form_sup_tbl (fdesc,lvalue) values('City','Paris')",
           "select lvalue from form_sup_tbl where fdesc='City'", "Rome/Paris");
    effect("164 the field of a step", city_field, "select * from form_tbl where fposition=0", city_row);
    effect("165 another code field", city_field + " ;; " + name_field,
           "select count(*) from form_tbl where fcode=true and fposition<>0", "1");
    effect("166 another address field", city_field + " ;; " + name_field,
           "select count(*) from form_tbl where fdtype='yes' and fposition<>0", "1");
    effect("167 a name offered", "select Count(*) from fnames_tbl where fname='first name'", "", "1");
    effect("168 a name added", "insert into fnames_tbl (fname) values('City')",
           "select fname from fnames_tbl where fname='City'", "City");
    effect("169 a name used elsewhere", name_field, "select count(*) from form_tbl where fdesc='name' and fposition<>0",
           "1");
    effect("170 a step's field goes", city_field + " ;; delete from form_tbl where fposition=0",
           "select count(*) from form_tbl", "0");
    effect("171 check boxes give 1 and 0", city_field, "select * from form_tbl", city_row);
    effect("172 names by position", name_field + " ;; " + city_field, "select fdesc from form_tbl order by fposition",
           "City/Name");
    effect("173 the account's address", "select email from email_tbl where id=3", "", "info@site.org");
    effect("174 fields in table order", name_field + " ;; " + city_field, "select * from form_tbl ",
           "Name|-|YES|1|-|True|False|-|False|False|-|-|-/" + city_row);
}

void statements_forms_test::pages_data()
{
    effect_columns();
    effect("175 no page", "select * from htmlform_tbl", "", "");
    effect("176 tags with a text", "update meta_tbl set meta_desc='Ann' where meta_name='author'",
           "select * from meta_tbl where meta_name<>'' and meta_desc<>''", "author|Ann");
    effect("176 Null is dropped too", "insert into meta_tbl(meta_name) values('x')",
           "select * from meta_tbl where meta_name<>'' and meta_desc<>''", "");
    effect("177 links in their order",
           "insert into form_links_tbl values('b','2') ;; insert into form_links_tbl values('a','1')",
           "select * from form_links_tbl", "b|2/a|1");
    effect("178 all options", "insert into form_sup_tbl (fdesc,lvalue) values('City','Paris')",
           "select * from form_sup_tbl", "1|City|Paris");
    effect("179 flags print as words", city_field, "select * from form_tbl", city_row);
    effect("180 all tags", "select count(*) from meta_tbl where meta_desc=''", "", "10");
    effect("181 the page's name",
           "insert into htmlform_tbl (heading) values('x') ;; "
           "update htmlform_tbl set htmlfile='contact'",
           "select htmlfile,Heading from htmlform_tbl", "contact|x");
    effect("182 a new page", "insert into htmlform_tbl (htmlfile) values('contact')",
           "select id,htmlfile,fontbold from htmlform_tbl", "1|contact|False");
    effect("183 a logo", "insert into htmlform_tbl(uplgif,description) values('logo.gif','Our logo')",
           "select uplgif,description from htmlform_tbl", "logo.gif|Our logo");
    effect("184 a logo changed",
           "insert into htmlform_tbl (htmlfile) values('c') ;; "
           "update htmlform_tbl set uplgif='logo.gif', description='Our logo'",
           "select htmlfile,uplgif,description from htmlform_tbl", "c|logo.gif|Our logo");
    effect("185 colours",
           "insert into htmlform_tbl (htmlfile) values('c') ;; "
           "update htmlform_tbl set bgcolor='#ffffff' ,fgcolor='#000000'",
           "select bgcolor,fgcolor from htmlform_tbl", "#ffffff|#000000");
    effect("186 an insert without into is refused", "insert htmlform_tbl(bgcolor,fgcolor) values('#ffffff','#000000')",
           "select count(*) from htmlform_tbl", "error 80040E14");
    effect("187 fonts, flags as numbers",
           "insert into htmlform_tbl (htmlfile) values('c') ;; update htmlform_tbl set fontname='Arial', "
           "heading='Hello', fontsize='3', fontbold=1, fontitalic=0, font_res_name='Arial', font_res_size='2'",
           "select * from htmlform_tbl", "1|c|-|-|-|-|-|3|Arial|True|False|Arial|2|Hello");
    effect("188 fonts, flags as words",
           "insert into htmlform_tbl(heading,fontname,fontsize,fontbold,fontitalic,font_res_name,font_res_size) "
           "values('Hello','Arial','3',True,False,'Arial','2')",
           "select fontbold,fontitalic from htmlform_tbl", "True|False");
    effect("190 a blank at the end", "select count(*) from meta_tbl ", "", "10");
    effect("191 a tag", "select * from meta_tbl where meta_name ='Keywords'", "", "keywords|");
    effect("192 a tag by pattern", "select count(*) from meta_tbl where meta_name like 'KEYWORDS'", "", "1");
    effect("193 the tag itself", "select * from meta_tbl where meta_name like 'keywords'", "", "keywords|");
}

void statements_forms_test::publishing_data()
{
    effect_columns();
    const QString publish = "INSERT INTO final_form_tbl ( fdesc, fftype, fdtype, fposition, fstatus, fcode,flabel,"
                            "fini, fmul,fnull,fvtype,fquery,ftransfer ) SELECT  fdesc, fftype, fdtype, fposition, "
                            "fstatus, fcode,flabel,fini, fmul,fnull,fvtype,fquery,ftransfer  From form_tbl ";
    effect("194 labels off",
           city_field + " ;; update form_tbl set flabel=1 ;; " + publish + " ;; update final_form_tbl set flabel=0",
           "select flabel from final_form_tbl", "False");
    effect(
        "195 what is replaced goes",
        city_field + " ;; " + publish +
            " ;; insert into final_form_tbl(fdesc,fquery) values('Other','3') ;; "
            "delete from final_form_tbl WHERE fdesc In (select fdesc from form_tbl) AND fquery  In (select fquery from "
            "form_tbl)",
        "select fdesc from final_form_tbl", "Other");
    effect("196 insert from a select", city_field + " ;; " + publish, "select * from final_form_tbl", city_row);
    effect("197 hosts, in other letters", host, "select * from host_Details", "Mine|ftp.site.org|jo|pw||no|Linux/Unix");
    effect("198 a host by name", host, "select hostip from host_Details where hostname='MINE'", "ftp.site.org");
    effect("199 a host goes", host + " ;; delete from host_Details where hostname='Mine'",
           "select count(*) from host_details", "0");
    effect("200 a host", host, "select hosttype from host_details", "Linux/Unix");
    effect("201 a number as it came", "select count(*) from email_tbl where id=3", "", "1");
    effect("202 a link", "insert into form_links_tbl (link_name,link_file) values('Home','index.htm')",
           "select * from form_links_tbl", "Home|index.htm");
    effect("203 a tag's text", "update meta_tbl set meta_desc='a, b' where meta_name='keywords'",
           "select meta_desc from meta_tbl where meta_name='keywords'", "a, b");
    effect("204 a page read back",
           "insert into htmlform_tbl (htmlfile,uplgif,description,bgcolor,fgcolor,template,fontsize,fontname,fontbold,"
           "fontitalic,font_res_name,font_res_size,heading) values('contact','logo.gif','Our logo','#ffffff',"
           "'#000000','','3','Arial',True,False,'Arial','2','Hello')",
           "select * from htmlform_tbl",
           "1|contact|logo.gif|Our logo|#ffffff|#000000||3|Arial|True|False|Arial|2|Hello");
    effect("205 a field read back",
           "insert into form_tbl (fdesc,fftype,fdtype,fposition,fstatus,fcode,flabel,Fini,Fmul,Fnull,fvtype,fquery,"
           "ftransfer) values ('City','Textbox','no',0,'',True,False,0,False,False,3,'3','')",
           "select * from form_tbl", "City|Textbox|no|0||True|False|0|False|False|3|3|");
    effect("206 a host without a type",
           "insert into host_details (hostname,hostip,hostusername,hostpassword,hostcomment) "
           "values('Mine','ftp.site.org','jo','pw','')",
           "select hostcomment,hosttype from host_details", "|-");
}

void statements_forms_test::labels_data()
{
    effect_columns();
    effect("207 a stock", "Select product_code from LabelSpec where product_code='l7160'", "", "L7160");
    effect("208 the format saved last", a4 + " ;; " + a5,
           "select recdesc from lbl_save where lastsaved=yes and table_name='cust'", "A4");
    effect("209 it comes first", a5 + " ;; " + a4,
           "Select recdesc from lbl_save where table_name='cust' order by lastsaved", "A4/A5");
    effect("210 a format", a4, "select lsize from lbl_save where recdesc='a4' and table_name='cust'", "63x38");
    effect("211 a name taken", a4, "select count(*) from lbl_Save where recdesc='A4'", "1");
    effect("212 none saved last", a4 + " ;; update lbl_save set lastsaved=no where lastsaved=yes and table_name='cust'",
           "select lastsaved from lbl_save", "False");
    effect("213 unnamed columns stay Null", a4, "select * from lbl_save",
           "A4|Avery L7160|63x38|first_name,city||-|-|-|-|-|-|cust|True");
    effect("214 formats of a map", a4, "Select recdesc from lbl_save where table_name='CUST'", "A4");
    effect("215 none saved last of a map", a4 + " ;; update lbl_save set lastsaved=no where table_name ='cust'",
           "select lastsaved from lbl_save", "False");
    effect("216 a format goes", a4 + " ;; delete from lbl_save where recdesc='A4'", "select count(*) from lbl_save",
           "0");
    effect("217 a format by name", a4, "Select ltype from lbl_save where recdesc='A4'", "Avery L7160");
    effect("218 all formats", a4 + " ;; " + a5, "select recdesc from lbl_save ", "A4/A5");
    effect("219 rows for labels",
           "select message_id from cust where tsl_status='new' and datevalue(tsl_recdate)>=datevalue('8/13/2026') and "
           "datevalue(tsl_recdate)<=datevalue('11/21/2026') and city like 'Par%' and "
           "datevalue(tsl_recdate)>=datevalue('8/13/2026') and datevalue(tsl_recdate)<=datevalue('11/21/2026')",
           "", "1");
    effect("219 a word that is no date", "select message_id from cust where datevalue(tsl_recdate)>=datevalue('xx')",
           "", "error 80040E07");
    effect("219 a text against a number", "select message_id from cust where message_id='x'", "", "error 80040E07");
    effect("220 a pattern in other letters", "select message_id from cust where 1=1  and city like 'pAR%'", "", "1/2");
    effect("221 a format's fields", a4,
           "select ltype,lsize,field1,field2,field3,field4,field5,field6,field7,field8 from lbl_save where "
           "recdesc='A4'",
           "Avery L7160|63x38|first_name,city||-|-|-|-|-|-");
    effect("222 a formula row by position", "insert into formula_tbl values('1','2','3','4','5','65','7','8')",
           "select * from formula_tbl", "1|2|3|4|5|65|7|8");
    effect("223 formulas emptied", "insert into formula_tbl(formula1) values('1') ;; delete * from formula_tbl",
           "select count(*) from formula_tbl", "0");
    effect("224 a label", "insert into formula_tbl values('Jo','Bee','','','','','','')", "select * from formula_tbl",
           "Jo|Bee||||||");
    effect("225 labels in the order they came",
           "insert into formula_tbl(formula1) values('b') ;; insert into formula_tbl(formula1) values('a') ;; "
           "insert into formula_tbl(formula1) values('b')",
           "select formula1 from formula_tbl", "b/a/b");
    effect("226 a label by name",
           "insert into formula_tbl (formula1,formula2,formula3,formula4,formula5,formula6,formula7,formula8) "
           "values('Jo','Bee','','','','','','')",
           "select * from formula_tbl", "Jo|Bee||||||");
}

QTEST_GUILESS_MAIN(statements_forms_test)
#include "statements_forms_test.moc"
