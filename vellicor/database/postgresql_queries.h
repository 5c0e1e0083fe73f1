// vellicor/database/postgresql_queries.h — the questions that the catalog of PostgreSQL is asked. "$schemas" stands for
// the list of schemas that are read.
#pragma once

namespace vellicor::postgresql {

inline constexpr const char* kSchemas = R"(
SELECT nspname FROM pg_namespace
WHERE nspname !~ '^pg_' AND nspname <> 'information_schema'
  AND NOT EXISTS (SELECT FROM pg_depend d WHERE d.classid = 'pg_namespace'::regclass AND d.objid = pg_namespace.oid
                  AND d.deptype = 'e')
ORDER BY nspname)";

/// oid, schema, name, kind, comment, tablespace, persistence, view's query and columns, whether a partition, parents,
/// partition key, options.
inline constexpr const char* kRelations = R"(
SELECT c.oid, n.nspname, c.relname, c.relkind, obj_description(c.oid, 'pg_class'), t.spcname, c.relpersistence,
  CASE WHEN c.relkind IN ('v', 'm') THEN pg_get_viewdef(c.oid) END,
  CASE WHEN c.relkind IN ('v', 'm') THEN (SELECT string_agg(attname, chr(10) ORDER BY attnum) FROM pg_attribute
    WHERE attrelid = c.oid AND attnum > 0 AND NOT attisdropped) END,
  c.relispartition, (SELECT string_agg(inhparent::regclass::text, ', ' ORDER BY inhseqno) FROM pg_inherits
    WHERE inhrelid = c.oid),
  CASE WHEN c.relkind = 'p' THEN pg_get_partkeydef(c.oid) END, array_to_string(c.reloptions, ', ')
FROM pg_class c JOIN pg_namespace n ON n.oid = c.relnamespace LEFT JOIN pg_tablespace t ON t.oid = c.reltablespace
WHERE c.relkind IN ('r', 'p', 'v', 'm', 'f') AND n.nspname IN $schemas
  AND NOT EXISTS (SELECT FROM pg_depend d WHERE d.classid = 'pg_class'::regclass AND d.objid = c.oid AND d.deptype = 'e')
ORDER BY n.nspname, c.relname)";

/// table, name, type, not null, default, identity, generated, collation, comment, whether a sequence of its own counts.
inline constexpr const char* kColumns = R"(
SELECT a.attrelid, a.attname, format_type(a.atttypid, a.atttypmod), a.attnotnull, pg_get_expr(d.adbin, d.adrelid),
  a.attidentity, to_jsonb(a) ->> 'attgenerated',
  CASE WHEN a.attcollation <> ty.typcollation THEN co.collname END,
  col_description(a.attrelid, a.attnum),
  pg_get_expr(d.adbin, d.adrelid) LIKE 'nextval(%' AND EXISTS (SELECT FROM pg_depend s
    JOIN pg_class q ON q.oid = s.objid AND q.relkind = 'S' WHERE s.classid = 'pg_class'::regclass
    AND s.refclassid = 'pg_class'::regclass AND s.refobjid = a.attrelid AND s.refobjsubid = a.attnum AND s.deptype = 'a')
FROM pg_attribute a JOIN pg_class c ON c.oid = a.attrelid AND c.relkind IN ('r', 'p')
  JOIN pg_namespace n ON n.oid = c.relnamespace AND n.nspname IN $schemas
  JOIN pg_type ty ON ty.oid = a.atttypid LEFT JOIN pg_collation co ON co.oid = a.attcollation
  LEFT JOIN pg_attrdef d ON d.adrelid = a.attrelid AND d.adnum = a.attnum
WHERE a.attnum > 0 AND NOT a.attisdropped ORDER BY a.attrelid, a.attnum)";

/// table, name, kind, columns, target's schema, name and columns, actions, deferral, check, comment, validity, no
/// inherit, match, included columns, definition.
inline constexpr const char* kConstraints = R"(
SELECT k.conrelid, k.conname, k.contype,
  (SELECT string_agg(a.attname, chr(10) ORDER BY place) FROM unnest(k.conkey) WITH ORDINALITY u(n, place)
    JOIN pg_attribute a ON a.attrelid = k.conrelid AND a.attnum = u.n),
  tn.nspname, t.relname,
  (SELECT string_agg(a.attname, chr(10) ORDER BY place) FROM unnest(k.confkey) WITH ORDINALITY u(n, place)
    JOIN pg_attribute a ON a.attrelid = k.confrelid AND a.attnum = u.n),
  k.confdeltype, k.confupdtype, k.condeferrable, k.condeferred,
  CASE WHEN k.contype = 'c' THEN pg_get_expr(k.conbin, k.conrelid) END, obj_description(k.oid, 'pg_constraint'),
  k.convalidated, k.connoinherit, k.confmatchtype,
  (SELECT string_agg(a.attname, chr(10) ORDER BY place) FROM pg_index x,
    unnest(x.indkey::int2[]) WITH ORDINALITY u(n, place) JOIN pg_attribute a ON a.attnum = u.n
    WHERE x.indexrelid = k.conindid AND k.contype IN ('p', 'u') AND a.attrelid = k.conrelid
    AND place > (SELECT count(*) FROM unnest(k.conkey))),
  CASE WHEN k.contype NOT IN ('c', 'f') THEN pg_get_constraintdef(k.oid) END
FROM pg_constraint k JOIN pg_class c ON c.oid = k.conrelid JOIN pg_namespace n ON n.oid = c.relnamespace
  LEFT JOIN pg_class t ON t.oid = k.confrelid LEFT JOIN pg_namespace tn ON tn.oid = t.relnamespace
WHERE n.nspname IN $schemas AND k.contype IN ('c', 'f', 'p', 'u', 'x') ORDER BY k.conrelid, k.conname)";

/// One row a column or expression of each index that no constraint made: table, index, name, unique, method, condition,
/// comment, whether only included, column, expression, collation, operator class, direction, nulls, options.
inline constexpr const char* kIndexes = R"(
SELECT x.indrelid, x.indexrelid, i.relname, x.indisunique, m.amname, pg_get_expr(x.indpred, x.indrelid),
  obj_description(i.oid, 'pg_class'), place > (to_jsonb(x) ->> 'indnkeyatts')::int, a.attname,
  CASE WHEN key = 0 THEN pg_get_indexdef(x.indexrelid, place::int, false) END,
  CASE WHEN co.oid IS NOT NULL AND co.oid <> coalesce(a.attcollation, 100) THEN 'COLLATE ' || quote_ident(co.collname) END,
  CASE WHEN NOT oc.opcdefault THEN quote_ident(oc.opcname) END,
  CASE WHEN option & 1 = 1 THEN CASE WHEN option & 2 = 2 THEN 'DESC' ELSE 'DESC NULLS LAST' END
    WHEN option & 2 = 2 THEN 'NULLS FIRST' END,
  to_jsonb(x) ->> 'indnullsnotdistinct' = 'true', array_to_string(i.reloptions, ', ')
FROM pg_index x JOIN pg_class i ON i.oid = x.indexrelid JOIN pg_class c ON c.oid = x.indrelid AND c.relkind IN ('r', 'p')
  JOIN pg_namespace n ON n.oid = c.relnamespace AND n.nspname IN $schemas JOIN pg_am m ON m.oid = i.relam
  CROSS JOIN LATERAL (SELECT place, key, x.indoption[place - 1] AS option, x.indcollation[place - 1] AS coll,
    x.indclass[place - 1] AS class FROM unnest(x.indkey::int2[]) WITH ORDINALITY u(key, place)) parts
  LEFT JOIN pg_attribute a ON a.attrelid = x.indrelid AND a.attnum = key AND key > 0
  LEFT JOIN pg_collation co ON co.oid = coll LEFT JOIN pg_opclass oc ON oc.oid = class
WHERE NOT EXISTS (SELECT FROM pg_constraint WHERE conindid = x.indexrelid AND contype IN ('p', 'u', 'x'))
ORDER BY x.indrelid, i.relname, place)";

/// Extensions, types and free sequences that tables may need, as statements.
inline constexpr const char* kTypes = R"(
SELECT statement FROM (
SELECT 0 AS turn, extname::text AS name,
  format('CREATE EXTENSION IF NOT EXISTS %I;', extname) AS statement FROM pg_extension WHERE extname <> 'plpgsql'
UNION ALL
SELECT 1, t.oid::regtype::text, CASE WHEN n.nspname <> 'public' THEN format('CREATE SCHEMA IF NOT EXISTS %I; ', n.nspname)
    ELSE '' END || format('CREATE TYPE %s AS ENUM (%s);', t.oid::regtype,
    (SELECT string_agg(quote_literal(enumlabel), ', ' ORDER BY enumsortorder) FROM pg_enum WHERE enumtypid = t.oid))
FROM pg_type t JOIN pg_namespace n ON n.oid = t.typnamespace WHERE t.typtype = 'e' AND n.nspname IN $schemas
  AND NOT EXISTS (SELECT FROM pg_depend d WHERE d.classid = 'pg_type'::regclass AND d.objid = t.oid AND d.deptype = 'e')
UNION ALL
SELECT 2, t.oid::regtype::text, CASE WHEN n.nspname <> 'public' THEN format('CREATE SCHEMA IF NOT EXISTS %I; ', n.nspname)
    ELSE '' END || format('CREATE DOMAIN %s AS %s%s%s%s;', t.oid::regtype, format_type(t.typbasetype, t.typtypmod),
    CASE WHEN t.typdefault IS NOT NULL THEN ' DEFAULT ' || t.typdefault ELSE '' END,
    CASE WHEN t.typnotnull THEN ' NOT NULL' ELSE '' END,
    coalesce((SELECT string_agg(format(' CONSTRAINT %I %s', conname, pg_get_constraintdef(oid)), '' ORDER BY conname)
              FROM pg_constraint WHERE contypid = t.oid AND contype = 'c'), ''))
FROM pg_type t JOIN pg_namespace n ON n.oid = t.typnamespace WHERE t.typtype = 'd' AND n.nspname IN $schemas
  AND NOT EXISTS (SELECT FROM pg_depend d WHERE d.classid = 'pg_type'::regclass AND d.objid = t.oid AND d.deptype = 'e')
UNION ALL
SELECT 3, c.oid::regclass::text, CASE WHEN n.nspname <> 'public' THEN format('CREATE SCHEMA IF NOT EXISTS %I; ', n.nspname)
    ELSE '' END || format('CREATE SEQUENCE %s;', c.oid::regclass)
FROM pg_class c JOIN pg_namespace n ON n.oid = c.relnamespace WHERE c.relkind = 'S' AND n.nspname IN $schemas
  AND NOT EXISTS (SELECT FROM pg_depend d WHERE d.classid = 'pg_class'::regclass AND d.objid = c.oid
                  AND d.deptype IN ('a', 'i', 'e'))
) s ORDER BY turn, name)";

/// A line for each thing that no document holds.
inline constexpr const char* kOmissions = R"(
SELECT line FROM (
SELECT format('trigger %s of %s', t.tgname, t.tgrelid::regclass) AS line FROM pg_trigger t
  JOIN pg_class c ON c.oid = t.tgrelid JOIN pg_namespace n ON n.oid = c.relnamespace
  WHERE NOT t.tgisinternal AND n.nspname IN $schemas
UNION ALL
SELECT format('%s %s', CASE p.prokind WHEN 'p' THEN 'procedure' WHEN 'a' THEN 'aggregate' ELSE 'function' END,
    p.oid::regprocedure) FROM (SELECT oid, pronamespace, to_jsonb(f) ->> 'prokind' AS prokind FROM pg_proc f) p
  JOIN pg_namespace n ON n.oid = p.pronamespace WHERE n.nspname IN $schemas
  AND NOT EXISTS (SELECT FROM pg_depend d WHERE d.classid = 'pg_proc'::regclass AND d.objid = p.oid AND d.deptype = 'e')
UNION ALL
SELECT format('rule %s of %s', r.rulename, r.ev_class::regclass) FROM pg_rewrite r JOIN pg_class c ON c.oid = r.ev_class
  JOIN pg_namespace n ON n.oid = c.relnamespace WHERE r.rulename <> '_RETURN' AND n.nspname IN $schemas
UNION ALL
SELECT format('policy %s of %s', p.polname, p.polrelid::regclass) FROM pg_policy p JOIN pg_class c ON c.oid = p.polrelid
  JOIN pg_namespace n ON n.oid = c.relnamespace WHERE n.nspname IN $schemas
UNION ALL
SELECT format('composite type %s', t.oid::regtype) FROM pg_type t JOIN pg_class c ON c.oid = t.typrelid
  JOIN pg_namespace n ON n.oid = t.typnamespace WHERE c.relkind = 'c' AND n.nspname IN $schemas
UNION ALL
SELECT format('range type %s', t.oid::regtype) FROM pg_type t JOIN pg_namespace n ON n.oid = t.typnamespace
  WHERE t.typtype = 'r' AND n.nspname IN $schemas
UNION ALL
SELECT format('grants on %s', c.oid::regclass) FROM pg_class c JOIN pg_namespace n ON n.oid = c.relnamespace
  WHERE c.relacl IS NOT NULL AND c.relkind IN ('r', 'p', 'v', 'm', 'S') AND n.nspname IN $schemas
UNION ALL
SELECT format('extended statistics %s', s.stxname) FROM pg_statistic_ext s JOIN pg_namespace n ON n.oid = s.stxnamespace
  WHERE n.nspname IN $schemas
UNION ALL
SELECT format('comment on schema %s', n.nspname) FROM pg_namespace n WHERE n.nspname IN $schemas
  AND n.nspname <> 'public' AND obj_description(n.oid, 'pg_namespace') IS NOT NULL
) s ORDER BY line)";

}  // namespace vellicor::postgresql
