

CREATE TABLE companies
(
company_no INT NOT NULL,
name VARCHAR(80) NOT NULL UNIQUE ,
PRIMARY KEY (company_no)
) ENGINE=InnoDB COMMENT='The companies of the group';

CREATE TABLE departments
(
company_no INT NOT NULL,
department_no INT NOT NULL,
title VARCHAR(80) DEFAULT 'untitled',
PRIMARY KEY (company_no,department_no)
);

CREATE TABLE employees
(
employee_no INT NOT NULL AUTO_INCREMENT,
company_no INT,
department_no INT,
manager_no INT,
salary DECIMAL(10,2),
PRIMARY KEY (employee_no)
);

CREATE TABLE badges
(
badge_no CHAR(8),
employee_no INT,
PRIMARY KEY (badge_no)
);

ALTER TABLE departments ADD CONSTRAINT departments_company FOREIGN KEY departments_company (company_no) REFERENCES companies (company_no) ON DELETE CASCADE;

CREATE INDEX departments_title ON departments (title);

ALTER TABLE employees ADD CONSTRAINT employees_manager FOREIGN KEY employees_manager (manager_no) REFERENCES employees (employee_no) ON DELETE SET NULL;

ALTER TABLE employees ADD CONSTRAINT fk FOREIGN KEY fk (company_no,department_no) REFERENCES departments (company_no,department_no);

ALTER TABLE badges ADD FOREIGN KEY employee_no_idxfk (employee_no) REFERENCES employees (employee_no);
