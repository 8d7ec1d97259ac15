#include "platform/letter_case.h"
#include "platform/real/jet/conversion.h"
#include "platform/real/jet/failures.h"
#include "platform/real/jet/row_cursor.h"
#include "platform/real/jet/shared_handle.h"

namespace ado {

struct Recordset::state {
    std::weak_ptr<Connection::shared_handle> handle;
    std::unique_ptr<jet::row_cursor> rows;
    cursor_type cursor = cursor_type::static_;
    lock_type lock = lock_type::read_only;
    bool adding = false;
    std::vector<std::optional<Value>> edits; // one a column while a row is added or edited

    void need_open() const
    {
        if (handle.expired())
            jet::fail(object_closed, QStringLiteral("Operation is not allowed when the object is closed."));
    }

    // Keeps the store open for the time of a call.
    std::shared_ptr<Connection::shared_handle> store() const
    {
        need_open();
        return handle.lock();
    }

    const std::vector<jet::result_column> &columns() const { return rows->select().columns; }

    jet::row_cursor &cursor_to_move()
    {
        save();
        return *rows;
    }

    void need_changeable() const
    {
        if (lock == lock_type::read_only || !rows->select().keyed)
            jet::fail(recordset_read_only, QStringLiteral("Current Recordset does not support updating. This may be a "
                                                          "limitation of the provider, or of the selected locktype."));
    }

    void save()
    {
        if (edits.empty())
            return;
        std::vector<int> places;
        std::vector<Value> values;
        for (size_t i = 0; i < edits.size(); ++i) {
            if (!edits[i])
                continue;
            places.push_back(columns()[i].place);
            values.push_back(*edits[i]);
        }
        jet::database &db = store()->store;
        if (adding)
            rows->appended(db.insert(rows->select(), places, values));
        else
            db.update(rows->select(), rows->current_key(), places, values);
        forget_edits();
    }

    void forget_edits()
    {
        adding = false;
        edits.clear();
    }
};

namespace {

Recordset::state &open_state(const std::unique_ptr<Recordset::state> &held)
{
    if (!held)
        jet::fail(object_closed, QStringLiteral("Operation is not allowed when the object is closed."));
    held->need_open();
    return *held;
}

}

Recordset::Recordset() = default;

Recordset::~Recordset() = default;

void Recordset::Open(const QString &sql, Connection &connection, cursor_type cursor, lock_type lock)
{
    if (State() == 1)
        jet::fail(object_open, QStringLiteral("Operation is not allowed when the object is open."));
    held.reset(); // closed with its connection
    if (!connection.handle)
        jet::fail(object_closed, QStringLiteral("The connection cannot be used to perform this operation. It is either "
                                                "closed or invalid in this context."));
    jet::database &db = connection.handle->store;
    auto plan = db.plan_of(sql);
    if (plan->kind != jet::statement_kind::select) {
        db.execute(sql);
        return;
    }
    auto made = std::make_unique<state>();
    made->handle = connection.handle;
    made->cursor = cursor;
    made->lock = lock;
    const bool live = cursor == cursor_type::keyset || lock == lock_type::optimistic;
    made->rows = std::make_unique<jet::row_cursor>(db, std::move(plan), sql, live);
    held = std::move(made);
}

void Recordset::Close()
{
    open_state(held);
    held.reset();
}

int Recordset::State() const
{
    return held && !held->handle.expired() ? 1 : 0;
}

bool Recordset::EOF_() const
{
    state &of = open_state(held);
    return !of.adding && of.rows->at_end();
}

bool Recordset::BOF() const
{
    state &of = open_state(held);
    return !of.adding && of.rows->at_start();
}

qint64 Recordset::RecordCount()
{
    state &of = open_state(held);
    return of.cursor == cursor_type::forward_only ? -1 : of.rows->count();
}

void Recordset::MoveFirst()
{
    open_state(held).cursor_to_move().move_first();
}

void Recordset::MoveNext()
{
    open_state(held).cursor_to_move().move_by(1);
}

void Recordset::MovePrevious()
{
    open_state(held).cursor_to_move().move_by(-1);
}

void Recordset::MoveLast()
{
    open_state(held).cursor_to_move().move_last();
}

int Recordset::field_count() const
{
    return int(open_state(held).columns().size());
}

Field Recordset::Fields(int index)
{
    if (index < 0 || index >= field_count())
        jet::fail(no_such_field, QStringLiteral("Item cannot be found in the collection corresponding to the requested "
                                                "name or ordinal."));
    return Field(this, index);
}

Field Recordset::Fields(const QString &name)
{
    const auto &columns = open_state(held).columns();
    for (size_t i = 0; i < columns.size(); ++i)
        if (columns[i].name == name ||
            (columns[i].name.size() == name.size() && compare_case_blind(columns[i].name, name) == 0))
            return Field(this, int(i));
    return Fields(-1);
}

void Recordset::AddNew()
{
    state &of = open_state(held);
    of.need_changeable();
    of.save();
    of.edits.resize(of.columns().size());
    of.adding = true;
}

void Recordset::Update()
{
    open_state(held).save();
}

void Recordset::CancelUpdate()
{
    open_state(held).forget_edits();
}

void Recordset::Delete()
{
    state &of = open_state(held);
    of.need_changeable();
    of.forget_edits();
    of.rows->count(); // the rows are found while the one to go is still among them
    const qint64 key = of.rows->current_key();
    of.store()->store.delete_row(of.rows->select(), key);
    of.rows->deleted();
}

// --- fields

QString Field::Name() const
{
    return open_state(rows->held).columns()[size_t(index)].name;
}

field_type Field::Type() const
{
    return open_state(rows->held).columns()[size_t(index)].type;
}

Value Field::value() const
{
    Recordset::state &of = open_state(rows->held);
    if (!of.edits.empty() && of.edits[size_t(index)])
        return *of.edits[size_t(index)];
    if (of.adding)
        return Type() == field_type::flag ? Value(false) : Value();
    return of.rows->value(size_t(index));
}

void Field::set_value(const Value &value)
{
    Recordset::state &of = open_state(rows->held);
    of.need_changeable();
    const jet::result_column &column = of.columns()[size_t(index)];
    if (!of.adding)
        of.rows->current_key();
    Value taken = jet::convert(value, column.to);
    if (of.edits.empty())
        of.edits.resize(of.columns().size());
    of.edits[size_t(index)] = std::move(taken);
}

}
