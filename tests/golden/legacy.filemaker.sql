

/*The companies of the group*/
CREATE TABLE "companies"
(
"company_no" INT PRIMARY KEY NOT NULL,
"name" VARCHAR(80) NOT NULL UNIQUE
);

CREATE TABLE "departments"
(
"company_no" INT PRIMARY KEY NOT NULL,
"department_no" INT NOT NULL,
"title" VARCHAR(80) DEFAULT 'untitled'
);

CREATE TABLE "employees"
(
"employee_no" INT PRIMARY KEY NOT NULL,
"company_no" INT,
"department_no" INT,
"manager_no" INT,
"salary" DECIMAL
);

CREATE TABLE "badges"
(
"badge_no" CHAR PRIMARY KEY,
"employee_no" INT
);

