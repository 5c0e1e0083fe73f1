

/*The companies of the group*/
CREATE TABLE companies
(
company_no INT NOT NULL,
name VARCHAR(80) NOT NULL,
CONSTRAINT companies_pkey PRIMARY KEY (company_no)
);

CREATE TABLE departments
(
company_no INT NOT NULL,
department_no INT NOT NULL,
title VARCHAR(80) DEFAULT untitled,
CONSTRAINT department_no_check_cons CHECK (department_no BETWEEN 1 AND 999),
CONSTRAINT departments_pkey PRIMARY KEY (company_no,department_no)
);

CREATE TABLE employees
(
employee_no INT NOT NULL IDENTITY,
company_no INT,
department_no INT,
manager_no INT,
salary DECIMAL(10,2),
CONSTRAINT employees_salary CHECK (salary >= 0),
CONSTRAINT employees_pkey PRIMARY KEY (employee_no)
);

CREATE TABLE badges
(
badge_no CHAR(8),
employee_no INT,
CONSTRAINT badges_pkey PRIMARY KEY (badge_no)
);

CREATE UNIQUE INDEX PrimaryIndex on companies (company_no)

CREATE UNIQUE INDEX PrimaryIndex on departments (company_no,department_no)

CREATE  INDEX departments_title ON departments (title);

CREATE UNIQUE INDEX PrimaryIndex on employees (employee_no)

CREATE UNIQUE INDEX PrimaryIndex on badges (badge_no)
