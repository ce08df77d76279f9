// Numbers of the binary form of the database that writing and reading share.
#ifndef KESTRIN_DATABASE_SAVEDFORM_H
#define KESTRIN_DATABASE_SAVEDFORM_H

/// The version of the database's layout.
constexpr long database_version = 0xAB0006;

/// Stands before each object of a list without count; anything else ends the list.
constexpr long another_follows = 1;

/// Stands before an instance.
enum saved_instance_kind { PLAIN_INSTANCE = 2, LUT_INSTANCE = 3 };

#endif
