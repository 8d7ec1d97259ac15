update install_tbl set install=yes
insert into email_tbl(query,email,table_name) values('orders','orders@rosecottage.example','orders')
insert into email_tbl(query,email,table_name) values('contact','hello@rosecottage.example','contact')
select * into [orders] from model_for_first
select * into [contact] from model_for_first
insert into table_list_tbl (table_name,date_created,query_id,lastformat,seperator,subject) values('shop_orders',date(),1,no,'Line','Order from the web shop')
select * into shop_orders from model_tbl
alter table shop_orders add column full_name text(255)
alter table shop_orders add column email text(255)
alter table shop_orders add column city text(255)
alter table shop_orders add column item text(255)
alter table shop_orders add column quantity text(255)
insert into format_tbl (fname,fposition,fignore,finclude,table_id,fcodegen) values('full_name','Line1',':',no,1,0)
insert into format_tbl (fname,fposition,fignore,finclude,table_id,fcodegen) values('email','Line2',':',no,1,0)
insert into format_tbl (fname,fposition,fignore,finclude,table_id,fcodegen) values('city','Line3',':',no,1,0)
insert into format_tbl (fname,fposition,fignore,finclude,table_id,fcodegen) values('item','Line4',':',no,1,0)
insert into format_tbl (fname,fposition,fignore,finclude,table_id,fcodegen) values('quantity','Line5',':@@@pieces',no,1,0)
insert into table_list_tbl (table_name,date_created,query_id,lastformat,seperator,subject) values('wholesale',date(),1,no,'|','Wholesale order')
select * into wholesale from model_tbl
alter table wholesale add column company text(255)
alter table wholesale add column email text(255)
alter table wholesale add column boxes text(255)
insert into format_tbl (fname,fposition,fignore,finclude,table_id,fcodegen) values('company','Line1','=',no,2,0)
insert into format_tbl (fname,fposition,fignore,finclude,table_id,fcodegen) values('email','Line2','=',no,2,0)
insert into format_tbl (fname,fposition,fignore,finclude,table_id,fcodegen) values('boxes','Line3','=',no,2,0)
insert into table_list_tbl (table_name,date_created,query_id,lastformat,seperator,subject) values('enquiries',date(),2,yes,'Line','Contact form')
select * into enquiries from model_tbl
alter table enquiries add column sender_name text(255)
alter table enquiries add column email text(255)
alter table enquiries add column question text(255)
insert into format_tbl (fname,fposition,fignore,finclude,table_id,fcodegen) values('sender_name','Line2','Name:',yes,3,0)
insert into format_tbl (fname,fposition,fignore,finclude,table_id,fcodegen) values('email','Line3','E-mail:',yes,3,0)
insert into format_tbl (fname,fposition,fignore,finclude,table_id,fcodegen) values('question','Line5','',yes,3,0)
update unsub_detail set enable_unsub=yes
insert into unsub_entryno (email,entryno) values('vera.lind@post.example','101')
insert into sign values( 'Rose Cottage','Ellen Marsh, Rose Cottage Nursery','Yes' )
update unsubconfirm_tbl set signature='Rose Cottage'
