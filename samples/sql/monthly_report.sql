-- Monthly report: the second query has a deliberate syntax error
SELECT YEAR(OrderDate) AS Y, MONTH(OrderDate) AS M, SUM(Amount) AS Total
FROM dbo.Orders
GROUP BY YEAR(OrderDate), MONTH(OrderDate);

SELECT CustomerID, Amount
FROM dbo.Orders
WHERE Amount > = 100;

SELECT LEN(Name) AS NameLength, UPPER(Name) AS Upper FROM dbo.Customers;
