"""The default engine's SQL conversion: splitting, table DDL and statement rewriting."""
