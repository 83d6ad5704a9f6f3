#pragma once
// Who may log in: the owners of the player files in an installation folder.

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace demo {

struct Account {
    std::string name;
    std::string password;
};

// Reads the "Name=" and "Password=" lines of every .ini file in the folder.
std::vector<Account> ReadAccounts(const std::filesystem::path& folder);

// The account whose name and password the text consists of, divided by a space; null for a wrong one. Either may hold
// spaces.
const Account* FindAccount(const std::vector<Account>& accounts, std::string_view nameAndPassword);

// Without regard to the case of letters.
bool SameName(std::string_view a, std::string_view b);

}  // namespace demo
