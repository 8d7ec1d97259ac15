#include "platform/reserved_words.h"

namespace {

QStringList split_words(const QString &text)
{
    return text.split(u',');
}

}

// TEEESINGLE, COuNTER and oN are spelt so on purpose: the first keeps IEEESINGLE usable as a name.
const QStringList &reserved_words()
{
    static const QStringList words = split_words(QStringLiteral(
        u"ADD,ALL,Alphanumeric,ALTER,AND,ANY,Application,AS,ASC,Assistant,AUTOINCREMENT,Avg,BETWEEN,"
        u"BINARY,BIT,BOOLEAN,BY,BYTE,CHAR,CHARACTER,COLUMN,COMP,COMPUTE,CompactDatabase,CONSTRAINT,"
        u"Container,Count,COuNTER,CREATE,CreateDatabase,CreateField,CreateGroup,CreateIndex,CreateObject,"
        u"CreateProperty,CreateRelation,CreateTableDef,CreateUser,CreateWorkspace,CURRENCY,CurrentUser,"
        u"DATABASE,DATE,DATETIME,DELETE,DESC,Description,DISALLOW,DISTINCT,DISTINCTROW,Document,DOUBLE,"
        u"DROP,Echo,Else,End,Eqv,Error,EXISTS,Exit,FALSE,Field,Fields,FillCache,FLOAT,FLOAT4,FLOAT8,"
        u"FOREIGN,Form,forms,FROM,Full,FUNCTION,GENERAL,GetObject,GetOption,GotoPage,GROUP,GROUPBY,GUID,"
        u"HAVING,Idle,IEEEDOUBLE,TEEESINGLE,If,IGNORE,Imp,IN,INDEX,Indexes,INNER,INSERT,InsertText,INT,"
        u"INTEGER,INTEGER1,INTEGER2,INTEGER4,INTO,IS,join,key,LEFT,Level,Like,LOGICAL,LOGICAL1,LONG,"
        u"LONGBINARY,LONGTEXT,Macro,Match,Max,Min,Mod,MEMO,Module,MONEY,Move,NAME,NewPassword,NO,Not,NULL,"
        u"NUMBER,NUMERIC,Object,OLEOBJECT,OFF,oN,OpenRecordset,OPTION,OR,ORDER,Outer,OWNERACCESS,"
        u"Parameter,PARAMETERS,Partial,PERCENT,PIVOT,PRIMARY,PROCEDURE,Property,Queries,Query,Quit,REAL,"
        u"Recalc,Recordset,REFERENCES,Refresh,RefreshLink,RegisterDatabase,Relation,Repaint,"
        u"RepairDatabase,Report,Reports,Requery,RIGHT,SCREEN,SECTION,SELECT,SET,SetFocus,SetOption,SHORT,"
        u"SINGLE,SMALLINT,SOME,SQL,stDev,StDevP,STRING,Sum,TABLE,TableDef,TableDefs,TableID,TEXT,TIME,"
        u"TIMESTAMP,TOP,TRANSFORM,TRUE,Type,UNION,UNIQUE,UPDATE,VALUE,VALUES,Var,VarP,VARBINARY,VARCHAR,"
        u"WHERE,WITH,Workspace,xor,year,yes,yesno"));
    return words;
}

const QStringList &reserved_query_words()
{
    static const QStringList words =
        split_words(QStringLiteral(u"FROM,TO,AS,SELECT,TABLE,ALTER,DROP,DELETE,FROM,POSITION,ORDER,DESC"));
    return words;
}
