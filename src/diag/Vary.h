#pragma once
// A value that is a whole number, a float or a string and converts lazily between them, keeping each conversion.

#include <string>

class Vary {
  public:
    Vary();                            // an empty string, 0 and 0.0
    Vary(int number);                  // NOLINT: values convert as they are written
    Vary(float number);                // NOLINT
    Vary(const std::string& content);  // NOLINT
    Vary(const char* content);         // NOLINT
    Vary(const char* first, const char* last);
    Vary(const Vary& other);
    Vary& operator=(const Vary& other);

    int AsInt() const;
    float AsFloat() const;
    const std::string& AsString() const;

    // A string appends, a number adds.
    Vary& operator+=(const Vary& other);
    Vary& operator+=(const std::string& other);
    Vary& operator+=(const char* other);

    Vary& operator++();
    Vary operator++(int);
    Vary& operator--();
    Vary operator--(int);

  private:
    enum Type : unsigned { WholeNumber = 0, Float = 1, String = 2 };
    enum Form : unsigned { StringForm = 1, FloatForm = 2, IntForm = 4, AllForms = 7 };

    Type type;
    mutable std::string text;
    mutable int whole = 0;
    mutable float real = 0.0F;
    mutable unsigned validForms;
};
