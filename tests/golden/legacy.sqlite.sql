

/*The companies of the group*/
CREATE TABLE companies
(
company_no INT NOT NULL PRIMARY KEY,
name VARCHAR(80) NOT NULL UNIQUE
);

CREATE TABLE departments
(
company_no INT NOT NULL REFERENCES companies (company_no) ON DELETE CASCADE,
department_no INT NOT NULL,
title VARCHAR(80) DEFAULT 'untitled',
CONSTRAINT department_no_check_cons CHECK (department_no BETWEEN 1 AND 999),
PRIMARY KEY (company_no,department_no)
);

CREATE TABLE employees
(
employee_no INT NOT NULL PRIMARY KEY,
company_no INT,
department_no INT,
manager_no INT REFERENCES employees (employee_no) ON DELETE SET NULL,
salary DECIMAL(10,2),
FOREIGN KEY (company_no,department_no) REFERENCES departments (company_no,department_no) ,
CONSTRAINT employees_salary CHECK (salary >= 0)
);

CREATE TABLE badges
(
badge_no CHAR(8) PRIMARY KEY,
employee_no INT REFERENCES employees (employee_no)
);

CREATE  INDEX departments_title ON departments (title);
